#pragma once

#include "ImageSizer.h"
#include "IsoLibrary.h"

#include "base/VbDate.h"

#include <QList>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

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
        // The node behind the item while the call that reports it runs; PendingItems keeps it
        // alive beyond that.
        IsoNode *node = nullptr;
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
        // An image on its own (an ISO file): imported files are copied whole from the disc
        // rather than left where they lie on it.
        bool standalone = false;
    };

    using ItemSink = std::function<void(const Item &)>;
    // Told of a source that is left out or taken differently: its path and a sentence.
    using NoticeSink = std::function<void(const QString &source, const QString &notice)>;
    // What a look at every source file before a write found. Files that grew are laid out at
    // their new size and told of; the first missing, replaced or shrunk one fails the write.
    struct SourceCheck {
        qint32 fileError = -1; // 0 opening, 2 reading; -1 all good
        QString failedPath;
        QList<QPair<QString, QString>> notices; // source, sentence
    };
    // Asked when a path being added holds an imported file: true replaces it.
    using ReplaceQuestion =
        std::function<bool(const QString &destPath, const QString &source, const QString &name)>;

    IsoImageTree();
    ~IsoImageTree();

    static constexpr qint32 Level = 3;

    // While the engine waits for the answer to a replace question, the members that change the
    // tree refuse (false, or nothing done): the walk asking holds nodes that must stay.
    bool changing() const { return m_asking > 0; }
    // Counts the changes that can take an item out of the image or move it (removals,
    // replacements, renames, resets, imports); additions leave it as it is.
    quint64 epoch() const { return m_epoch; }
    // Whether an item reported while the epoch was `since` is still in the image at its path,
    // and what it is now.
    bool current(const Item &reported, quint64 since, Item *now) const;

    bool clear();
    bool addFile(const QString &destPath, const QString &source, bool useModifiedDate,
                 const ItemSink &added, const ReplaceQuestion &replace);
    bool addDirectory(const QString &destPath, const QString &sourceDir, bool useModifiedDate,
                      const ItemSink &added, const ReplaceQuestion &replace);
    bool remove(const QString &destPath, Item *removed);
    bool rename(const QString &destPath, const QString &newName, bool directory,
                QString *newDestPath);
    void list(const QString &destPath, const ItemSink &sink) const;
    void setNoticeSink(NoticeSink sink) { m_notice = std::move(sink); }
    SourceCheck checkSources();

    // Reads the session that starts at `startBlock` of the recorder's medium into the tree.
    // Items already added stay; the identifiers become the disc's. Files whose data lies
    // outside `written` (the blocks each session really holds, when known) never reached the
    // disc: they are left out and their paths given in `leftOut`.
    bool importSession(Recorder &recorder, qint32 startBlock,
                       const QList<QPair<qint32, qint32>> &written, const ItemSink &added,
                       const ReplaceQuestion &replace, QStringList *leftOut);
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
    bool linkNode(IsoDir *parent, const QString &parentPath, const QString &name,
                  const QByteArray &source, const struct stat &st, bool useModifiedDate,
                  const ItemSink &added);
    void skipped(const QByteArray &source, const QString &what);
    // Moves the items of `from` into `target`; `carried` gets the nodes moved.
    void mergeInto(IsoDir *target, const QString &targetPath, IsoDir *from,
                   const ReplaceQuestion &replace, QSet<IsoNode *> &carried);
    IsoNode *find(const QString &destPath) const;
    IsoDir *ensureDirectory(const QString &destPath, bool useModifiedDate, const ItemSink &added);
    Item itemOf(IsoNode *node) const;
    void changed() { ++m_generation; }
    void rememberSize(const StreamOptions &options, quint64 generation, qint64 blocks);
    void countSubtree(IsoNode *node, int sign);
    void applyIdentifiers();
    bool ask(const ReplaceQuestion &replace, const QString &dest, const QString &source,
             const QString &name);
    void dropUnwritten(IsoDir *dir, const QList<QPair<qint32, qint32>> &written,
                       QStringList *leftOut);

    IsoLibrary::ImagePtr m_image;
    NoticeSink m_notice;
    QString m_ids[IdentifierCount];
    qint32 m_files = 0;
    qint32 m_directories = 0;
    bool m_imported = false;
    qint32 m_asking = 0;
    quint64 m_epoch = 0;
    quint64 m_generation = 0;
    quint64 m_sizeGeneration = ~quint64(0);
    bool m_sizeJoliet = false;
    qint32 m_sizeStart = -1;
    qint64 m_sizeBlocks = 0;
    qint64 m_lastBlocks = 0; // the last size known, whatever the tree became since
    // Last, so that a layout still running is joined before the image goes.
    mutable ImageSizer m_sizer;
};
