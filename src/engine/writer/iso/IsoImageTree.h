#pragma once

#include "ImageSizer.h"
#include "IsoLibrary.h"

#include "base/VbDate.h"

#include <QString>

#include <functional>

class Recorder;
struct stat;

// The ISO 9660 image tree: files and directories by destination path ("\dir\name", the root
// "\"), the nine volume identifiers, and the image stream made from them with libisofs. Lives
// on the UI thread; a running job holds its own reference to the libisofs image.
class IsoImageTree {
public:
    struct Item {
        QString parentPath;
        QString destPath;
        QString name;
        QString sourcePath; // empty for an item imported from a disc
        bool isDirectory = false;
        VbDate date;
        qint64 size = 0;
    };
    enum Identifier {
        Volume,
        System,
        VolumeSet,
        Publisher,
        DataPreparer,
        Application,
        CopyrightFile,
        AbstractFile,
        BiblioFile,
        IdentifierCount
    };
    // The settings that shape the image stream.
    struct StreamOptions {
        bool joliet = true;
        qint32 startBlock = 0; // the address the image is laid out for (multisession)
        bool sizeOnly = false;
    };

    using ItemSink = std::function<void(const Item &)>;
    // Asked when a path being added holds an imported file: true replaces it.
    using ReplaceQuestion =
        std::function<bool(const QString &destPath, const QString &source, const QString &name)>;

    IsoImageTree();
    ~IsoImageTree();

    static constexpr qint32 Level = 3;

    void clear();
    bool addFile(const QString &destPath, const QString &source, bool useModifiedDate,
                 const ItemSink &added, const ReplaceQuestion &replace);
    bool addDirectory(const QString &destPath, const QString &sourceDir, bool useModifiedDate,
                      const ItemSink &added, const ReplaceQuestion &replace);
    bool remove(const QString &destPath, Item *removed);
    bool rename(const QString &destPath, const QString &newName, bool directory,
                QString *newDestPath);
    void list(const QString &destPath, const ItemSink &sink) const;

    // Reads the session that starts at `startBlock` of the recorder's medium into the tree.
    // Items already added stay; the identifiers become the disc's.
    bool importSession(Recorder &recorder, qint32 startBlock, const ItemSink &added,
                       const ReplaceQuestion &replace);
    bool hasImport() const { return m_imported; }

    QString identifier(Identifier id) const { return m_ids[id]; }
    // Stores what the image will carry: the text cut to its field's length.
    void setIdentifier(Identifier id, const QString &value);

    qint32 fileCount() const { return m_files; }
    qint32 directoryCount() const { return m_directories; }

    // Blocks of the stream with these options; remembered until the tree changes. The layout
    // runs on a worker while the UI thread serves events other than user input. With
    // `imageHeld` (a job's threads own libisofs objects of this image, whose reference counts
    // are not atomic) nothing is laid out: the answer is the size last known, which for a job
    // is the size of the stream it writes.
    qint64 imageBlocks(const StreamOptions &options, bool imageHeld = false);
    // The image stream (libisofs's writer thread starts producing it at once).
    IsoLibrary::BurnSourcePtr makeStream(const StreamOptions &options, QString *error);
    // Size layouts made by this process so far (each touches every node of its image).
    static quint64 sizeLayouts();

private:
    struct Walk;
    IsoLibrary::BurnSourcePtr layoutStream(const StreamOptions &options, QString *error);
    bool addFileNode(IsoDir *parent, const QString &parentPath, const QString &name,
                     const QByteArray &source, const struct stat &st, bool useModifiedDate,
                     const ItemSink &added, const ReplaceQuestion &replace);
    // The directory of that name under the parent, made when missing (with its event).
    IsoDir *dirNode(IsoDir *parent, const QString &parentPath, const QString &name,
                    const QByteArray &source, const struct stat &st, bool useModifiedDate,
                    const ItemSink &added);
    void mergeInto(IsoDir *target, const QString &targetPath, IsoDir *from,
                   const ReplaceQuestion &replace);
    IsoNode *find(const QString &destPath) const;
    IsoDir *ensureDirectory(const QString &destPath, bool useModifiedDate, const ItemSink &added);
    Item itemOf(IsoNode *node) const;
    void changed() { ++m_generation; }
    void rememberSize(const StreamOptions &options, quint64 generation, qint64 blocks);
    void countSubtree(IsoNode *node, int sign);
    void applyIdentifiers();

    IsoLibrary::ImagePtr m_image;
    QString m_ids[IdentifierCount];
    qint32 m_files = 0;
    qint32 m_directories = 0;
    bool m_imported = false;
    quint64 m_generation = 0;
    quint64 m_sizeGeneration = ~quint64(0);
    bool m_sizeJoliet = false;
    qint32 m_sizeStart = -1;
    qint64 m_sizeBlocks = 0;
    qint64 m_lastBlocks = 0; // the last size known, whatever the tree became since
    // Last, so that a layout still running is joined before the image goes.
    mutable ImageSizer m_sizer;
};
