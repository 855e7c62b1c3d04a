#include "IsoImageTree.h"

#include "RecorderDataSource.h"
#include "SourceFileStream.h"

#include "engine/writer/recorders/Recorder.h"

#include <QDateTime>
#include <QFile>
#include <QSet>
#include <QStringDecoder>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <dirent.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

// The buffer between libisofs's producing thread and the job: 8 MiB rides out the moments
// when one of the two waits for a core on a busy machine.
constexpr int FifoBlocks = 4096;

std::atomic<quint64> g_sizeLayouts{0};

constexpr int FieldLength[IsoImageTree::IdentifierCount] = {32, 32, 128, 128, 128, 128, 37, 37, 37};

// Directories keep the path they were added from as extended information.
int sourceXinfo(void *data, int flag) {
    if (flag & 1)
        delete static_cast<QString *>(data);
    return 1;
}

QStringList components(const QString &destPath) {
    QString p = destPath;
    p.replace(u'/', u'\\');
    return p.split(u'\\', Qt::SkipEmptyParts);
}

QString joinDest(const QString &parent, const QString &name) {
    return parent.endsWith(u'\\') ? parent + name : parent + u'\\' + name;
}

bool validName(const QString &name) {
    const QByteArray utf8 = name.toUtf8();
    return !utf8.isEmpty() && utf8.size() <= 255 && !utf8.contains('/') && !name.contains(u'\\') &&
           utf8 != "." && utf8 != "..";
}

// The name a file system entry gets on the disc. Names that are not UTF-8 come mostly from old
// archives and FAT sticks written in a Western code page: read as Latin-1, every byte becomes
// one character, so "caf\xE9" is recorded as "café" and two such names never merge.
QString diskName(const QByteArray &bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString name = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : name;
}

VbDate dateOf(time_t t) {
    return VbDate::fromDateTime(QDateTime::fromSecsSinceEpoch(qint64(t)));
}

void setAttributes(IsoNode *node, const struct stat &st, bool directory, bool useModifiedDate) {
    // Readable by everyone on any machine: the owner's ids mean nothing on another system.
    const mode_t mode = directory ? 0555 : ((st.st_mode & 0111) | 0444);
    iso_node_set_permissions(node, mode);
    iso_node_set_uid(node, 0);
    iso_node_set_gid(node, 0);
    const time_t t = useModifiedDate ? st.st_mtime : time(nullptr);
    iso_node_set_mtime(node, t);
    iso_node_set_atime(node, t);
    iso_node_set_ctime(node, t);
}

struct DirIterDeleter {
    void operator()(IsoDirIter *it) const { iso_dir_iter_free(it); }
};
using DirIterPtr = std::unique_ptr<IsoDirIter, DirIterDeleter>;

std::vector<IsoNode *> childrenOf(IsoDir *dir) {
    std::vector<IsoNode *> out;
    IsoDirIter *raw = nullptr;
    if (iso_dir_get_children(dir, &raw) != 1)
        return out;
    DirIterPtr it(raw);
    IsoNode *node = nullptr;
    while (iso_dir_iter_next(it.get(), &node) == 1)
        out.push_back(node);
    return out;
}

struct DirCloser {
    void operator()(DIR *d) const { closedir(d); }
};

} // namespace

// The recursive walk of AddISODirectory: depth first, parents before children, with the
// directories on the way remembered so that a symbolic link loop ends.
struct IsoImageTree::Walk {
    IsoImageTree &tree;
    bool useModifiedDate;
    const ItemSink &added;
    const ReplaceQuestion &replace;
    QSet<QPair<dev_t, ino_t>> onPath;

    void addChildren(IsoDir *dir, const QString &destPath, const QByteArray &sourceDir) {
        std::unique_ptr<DIR, DirCloser> d(opendir(sourceDir.constData()));
        if (!d)
            return;
        std::vector<QByteArray> names;
        while (dirent *e = readdir(d.get())) {
            if (strcmp(e->d_name, ".") != 0 && strcmp(e->d_name, "..") != 0)
                names.emplace_back(e->d_name);
        }
        d.reset();
        std::sort(names.begin(), names.end());
        // libisofs keeps a directory's members in a sorted list: adding them from the last
        // name down puts each at the head, so a folder of many files costs no more than a few.
        struct Entry {
            IsoNode *node = nullptr;
            std::optional<Item> item;
            QByteArray source;
            QString name;
            QPair<dev_t, ino_t> id;
        };
        std::vector<Entry> entries(names.size());
        for (size_t i = names.size(); i-- > 0;) {
            Entry &entry = entries[i];
            entry.source = sourceDir + '/' + names[i];
            entry.name = diskName(names[i]);
            struct stat st {};
            if (lstat(entry.source.constData(), &st) != 0)
                continue; // vanished since the folder was read
            const QString &name = entry.name;
            const ItemSink keep = [&entry](const Item &item) { entry.item = item; };
            if (S_ISLNK(st.st_mode)) {
                // A link is recorded as a link: following it would copy what it points at
                // (a whole system through a few links), or loop.
                struct stat target {};
                if (stat(entry.source.constData(), &target) != 0) {
                    tree.skipped(entry.source, errno == ELOOP
                                                   ? QStringLiteral("a symbolic link that loops")
                                                   : QStringLiteral("a symbolic link to nothing"));
                    continue;
                }
                tree.linkNode(dir, destPath, name, entry.source, st, useModifiedDate, keep);
            } else if (S_ISREG(st.st_mode)) {
                tree.addFileNode(dir, destPath, name, entry.source, st, useModifiedDate, keep,
                                 replace);
            } else if (S_ISDIR(st.st_mode)) {
                entry.id = {st.st_dev, st.st_ino};
                if (onPath.contains(entry.id))
                    continue; // a link back to a directory above
                entry.node = reinterpret_cast<IsoNode *>(
                    tree.dirNode(dir, destPath, name, entry.source, st, useModifiedDate, keep));
            } else {
                // FIFOs, devices and sockets have no contents to record.
                tree.skipped(entry.source, S_ISFIFO(st.st_mode)
                                               ? QStringLiteral("a named pipe")
                                               : QStringLiteral("a device or socket"));
            }
        }
        // The events in name order, each folder's contents right after the folder.
        for (Entry &entry : entries) {
            if (entry.item && added)
                added(*entry.item);
            if (!entry.node)
                continue;
            onPath.insert(entry.id);
            addChildren(reinterpret_cast<IsoDir *>(entry.node), joinDest(destPath, entry.name),
                        entry.source);
            onPath.remove(entry.id);
        }
    }
};

IsoImageTree::IsoImageTree() {
    clear();
}

IsoImageTree::~IsoImageTree() = default;

bool IsoImageTree::clear() {
    if (changing())
        return false;
    m_sizer.settle();
    IsoLibrary::ensureStarted();
    IsoImage *raw = nullptr;
    iso_image_new("", &raw);
    m_image.reset(raw);
    if (raw) {
        // Names are kept whole up to the 255 bytes of Rock Ridge; longer ones are refused.
        iso_image_set_truncate_mode(raw, 0, 255);
    }
    m_files = 0;
    m_directories = 0;
    m_imported = false;
    applyIdentifiers();
    changed();
    ++m_epoch;
    return true;
}

bool IsoImageTree::current(const Item &reported, quint64 since, Item *now) const {
    if (since == m_epoch) {
        *now = reported;
        return true;
    }
    // Something left or moved meanwhile: the node must still stand at its path. The reference
    // held on it means no other node can have taken its address.
    if (!reported.node || find(reported.destPath) != reported.node)
        return false;
    *now = itemOf(reported.node);
    return true;
}

bool IsoImageTree::ask(const ReplaceQuestion &replace, const QString &dest, const QString &source,
                       const QString &name) {
    if (!replace)
        return false;
    ++m_asking;
    const bool yes = replace(dest, source, name);
    --m_asking;
    return yes;
}

void IsoImageTree::setIdentifier(Identifier id, const QString &value) {
    m_sizer.settle();
    // What the primary volume descriptor will hold: upper case, the characters ISO 9660 allows
    // in the field (others become "_"), cut to the field's length. The volume, the volume set
    // and the three file names take d-characters only, the others a-characters.
    const bool dChars = id == Volume || id == VolumeSet || id == CopyrightFile ||
                        id == AbstractFile || id == BiblioFile;
    static const QString aExtra = QStringLiteral(" !\"%&'()*+,-./:;<=>?");
    QString v = value.toUpper().left(FieldLength[id]);
    for (QChar &c : v) {
        const bool plain = (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_';
        if (!plain && (dChars || !aExtra.contains(c)))
            c = u'_';
    }
    m_ids[id] = v;
    applyIdentifiers();
    // The identifiers fill fields of fixed length: the image's size stays as it was.
}

void IsoImageTree::applyIdentifiers() {
    IsoImage *img = m_image.get();
    if (!img)
        return;
    auto c = [](const QString &s) { return s.toUtf8(); };
    iso_image_set_volume_id(img, c(m_ids[Volume]).constData());
    iso_image_set_system_id(img, c(m_ids[System]).constData());
    iso_image_set_volset_id(img, c(m_ids[VolumeSet]).constData());
    iso_image_set_publisher_id(img, c(m_ids[Publisher]).constData());
    iso_image_set_data_preparer_id(img, c(m_ids[DataPreparer]).constData());
    iso_image_set_application_id(img, c(m_ids[Application]).constData());
    iso_image_set_copyright_file_id(img, c(m_ids[CopyrightFile]).constData());
    iso_image_set_abstract_file_id(img, c(m_ids[AbstractFile]).constData());
    iso_image_set_biblio_file_id(img, c(m_ids[BiblioFile]).constData());
}

IsoNode *IsoImageTree::find(const QString &destPath) const {
    const QStringList parts = components(destPath);
    IsoNode *node = reinterpret_cast<IsoNode *>(iso_image_get_root(m_image.get()));
    for (const QString &part : parts) {
        if (!node || iso_node_get_type(node) != LIBISO_DIR)
            return nullptr;
        IsoNode *child = nullptr;
        if (iso_dir_get_node(reinterpret_cast<IsoDir *>(node), part.toUtf8().constData(), &child) !=
            1)
            return nullptr;
        node = child;
    }
    return node;
}

IsoImageTree::Item IsoImageTree::itemOf(IsoNode *node) const {
    Item item;
    QStringList names;
    for (IsoNode *n = node; n;) {
        IsoDir *parent = iso_node_get_parent(n);
        if (!parent || reinterpret_cast<IsoNode *>(parent) == n)
            break;
        names.prepend(QString::fromUtf8(iso_node_get_name(n)));
        n = reinterpret_cast<IsoNode *>(parent);
    }
    item.name = names.isEmpty() ? QString() : names.last();
    item.destPath = u'\\' + names.join(u'\\');
    names.removeLast();
    item.parentPath = u'\\' + names.join(u'\\');
    item.isDirectory = iso_node_get_type(node) == LIBISO_DIR;
    item.node = node;
    item.date = dateOf(iso_node_get_mtime(node));
    if (item.isDirectory || iso_node_get_type(node) == LIBISO_SYMLINK) {
        void *data = nullptr;
        if (iso_node_get_xinfo(node, sourceXinfo, &data) == 1 && data)
            item.sourcePath = *static_cast<QString *>(data);
    } else if (iso_node_get_type(node) == LIBISO_FILE) {
        auto *file = reinterpret_cast<IsoFile *>(node);
        item.size = qint64(iso_file_get_size(file));
        item.sourcePath = SourceFileStream::sourcePath(iso_file_get_stream(file));
    }
    return item;
}

IsoDir *IsoImageTree::dirNode(IsoDir *parent, const QString &parentPath, const QString &name,
                              const QByteArray &source, const struct stat &st, bool useModifiedDate,
                              const ItemSink &added) {
    IsoNode *existing = nullptr;
    const QByteArray utf8 = name.toUtf8();
    if (iso_dir_get_node(parent, utf8.constData(), &existing) == 1)
        return iso_node_get_type(existing) == LIBISO_DIR ? reinterpret_cast<IsoDir *>(existing)
                                                         : nullptr;
    if (!validName(name))
        return nullptr;
    IsoDir *dir = nullptr;
    if (iso_image_add_new_dir(m_image.get(), parent, utf8.constData(), &dir) < 0 || !dir)
        return nullptr;
    auto *node = reinterpret_cast<IsoNode *>(dir);
    setAttributes(node, st, true, useModifiedDate);
    if (!source.isEmpty())
        iso_node_add_xinfo(node, sourceXinfo, new QString(QFile::decodeName(source)));
    ++m_directories;
    changed();
    if (added) {
        Item item{parentPath, joinDest(parentPath, name),       name, QFile::decodeName(source),
                  true,       dateOf(iso_node_get_mtime(node)), 0};
        item.node = node;
        added(item);
    }
    return dir;
}

bool IsoImageTree::addFileNode(IsoDir *parent, const QString &parentPath, const QString &name,
                               const QByteArray &source, const struct stat &st,
                               bool useModifiedDate, const ItemSink &added,
                               const ReplaceQuestion &replace) {
    if (!validName(name))
        return false;
    const QByteArray utf8 = name.toUtf8();
    const QString dest = joinDest(parentPath, name);
    const QString sourcePath = QFile::decodeName(source);
    IsoNode *existing = nullptr;
    if (iso_dir_get_node(parent, utf8.constData(), &existing) == 1) {
        if (iso_node_get_type(existing) == LIBISO_DIR)
            return false;
        const bool imported =
            iso_node_get_type(existing) != LIBISO_FILE ||
            SourceFileStream::sourcePath(iso_file_get_stream(reinterpret_cast<IsoFile *>(existing)))
                .isEmpty();
        if (imported && !ask(replace, dest, sourcePath, name))
            return false;
        iso_node_remove(existing);
        --m_files;
        ++m_epoch;
    }
    IsoStream *stream = SourceFileStream::create(source, qint64(st.st_size));
    if (!stream)
        return false;
    IsoFile *file = nullptr;
    if (iso_image_add_new_file(m_image.get(), parent, utf8.constData(), stream, &file) < 0 ||
        !file) {
        iso_stream_unref(stream);
        changed();
        return false;
    }
    auto *node = reinterpret_cast<IsoNode *>(file);
    setAttributes(node, st, false, useModifiedDate);
    ++m_files;
    changed();
    if (added) {
        Item item{parentPath,        dest,  name,
                  sourcePath,        false, dateOf(iso_node_get_mtime(node)),
                  qint64(st.st_size)};
        item.node = node;
        added(item);
    }
    return true;
}

IsoDir *IsoImageTree::ensureDirectory(const QString &destPath, bool useModifiedDate,
                                      const ItemSink &added) {
    IsoDir *dir = iso_image_get_root(m_image.get());
    QString path = QStringLiteral("\\");
    struct stat now {};
    now.st_mtime = time(nullptr);
    for (const QString &part : components(destPath)) {
        dir = dirNode(dir, path, part, QByteArray(), now, useModifiedDate, added);
        if (!dir)
            return nullptr;
        path = joinDest(path, part);
    }
    return dir;
}

bool IsoImageTree::addFile(const QString &destPath, const QString &source, bool useModifiedDate,
                           const ItemSink &added, const ReplaceQuestion &replace) {
    if (changing())
        return false;
    m_sizer.settle();
    QStringList parts = components(destPath);
    if (parts.isEmpty() || source.isEmpty())
        return false;
    struct stat st {};
    const QByteArray local = QFile::encodeName(source);
    if (stat(local.constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return false; // missing, a link loop, a directory, a FIFO or a device
    const QString name = parts.takeLast();
    if (!validName(name))
        return false;
    const QString parentPath = u'\\' + parts.join(u'\\');
    IsoDir *parent = ensureDirectory(parentPath, useModifiedDate, added);
    return parent &&
           addFileNode(parent, parentPath, name, local, st, useModifiedDate, added, replace);
}

bool IsoImageTree::addDirectory(const QString &destPath, const QString &sourceDir,
                                bool useModifiedDate, const ItemSink &added,
                                const ReplaceQuestion &replace) {
    if (changing())
        return false;
    m_sizer.settle();
    const QByteArray local = QFile::encodeName(sourceDir);
    struct stat st {};
    if (local.isEmpty() || stat(local.constData(), &st) != 0 || !S_ISDIR(st.st_mode))
        return false;
    QStringList parts = components(destPath);
    IsoDir *dir = nullptr;
    QString path = QStringLiteral("\\");
    if (parts.isEmpty()) {
        dir = iso_image_get_root(m_image.get());
    } else {
        const QString name = parts.takeLast();
        const QString parentPath = u'\\' + parts.join(u'\\');
        IsoDir *parent = ensureDirectory(parentPath, useModifiedDate, added);
        if (!parent)
            return false;
        dir = dirNode(parent, parentPath, name, local, st, useModifiedDate, added);
        path = joinDest(parentPath, name);
    }
    if (!dir)
        return false;
    Walk walk{*this, useModifiedDate, added, replace, {}};
    walk.onPath.insert({st.st_dev, st.st_ino});
    walk.addChildren(dir, path, local);
    return true;
}

void IsoImageTree::countSubtree(IsoNode *node, int sign) {
    if (iso_node_get_type(node) == LIBISO_DIR) {
        m_directories += sign;
        for (IsoNode *child : childrenOf(reinterpret_cast<IsoDir *>(node)))
            countSubtree(child, sign);
    } else {
        m_files += sign;
    }
}

bool IsoImageTree::remove(const QString &destPath, Item *removed) {
    if (changing())
        return false;
    m_sizer.settle();
    if (components(destPath).isEmpty())
        return false; // the root stays
    IsoNode *node = find(destPath);
    if (!node)
        return false;
    if (removed)
        *removed = itemOf(node);
    countSubtree(node, -1);
    iso_node_remove(node);
    changed();
    ++m_epoch;
    return true;
}

bool IsoImageTree::rename(const QString &destPath, const QString &newName, bool directory,
                          QString *newDestPath) {
    if (changing())
        return false;
    m_sizer.settle();
    IsoNode *node = components(destPath).isEmpty() ? nullptr : find(destPath);
    if (!node || (iso_node_get_type(node) == LIBISO_DIR) != directory || !validName(newName))
        return false;
    IsoDir *parent = iso_node_get_parent(node);
    IsoNode *clash = nullptr;
    if (iso_dir_get_node(parent, newName.toUtf8().constData(), &clash) == 1 && clash != node)
        return false;
    if (iso_image_set_node_name(m_image.get(), node, newName.toUtf8().constData(), 0) < 0)
        return false;
    if (newDestPath)
        *newDestPath = itemOf(node).destPath;
    changed();
    ++m_epoch;
    return true;
}

void IsoImageTree::list(const QString &destPath, const ItemSink &sink) const {
    m_sizer.settle();
    IsoNode *node = find(destPath);
    if (!node || iso_node_get_type(node) != LIBISO_DIR)
        return;
    for (IsoNode *child : childrenOf(reinterpret_cast<IsoDir *>(node))) {
        const auto type = iso_node_get_type(child);
        if (type == LIBISO_DIR || type == LIBISO_FILE || type == LIBISO_SYMLINK)
            sink(itemOf(child));
    }
}

void IsoImageTree::mergeInto(IsoDir *target, const QString &targetPath, IsoDir *from,
                             const ReplaceQuestion &replace, QSet<IsoNode *> &carried) {
    for (IsoNode *child : childrenOf(from)) {
        const QString name = QString::fromUtf8(iso_node_get_name(child));
        const QString dest = joinDest(targetPath, name);
        IsoNode *existing = nullptr;
        if (iso_dir_get_node(target, iso_node_get_name(child), &existing) == 1) {
            const bool childDir = iso_node_get_type(child) == LIBISO_DIR;
            const bool existingDir = iso_node_get_type(existing) == LIBISO_DIR;
            if (childDir && existingDir) {
                mergeInto(reinterpret_cast<IsoDir *>(existing), dest,
                          reinterpret_cast<IsoDir *>(child), replace, carried);
                continue;
            }
            const QString source = itemOf(child).sourcePath;
            if (childDir || existingDir || !ask(replace, dest, source, name))
                continue; // the item added before gives way to the disc's
            iso_node_remove(existing);
        }
        iso_node_take(child);
        if (iso_dir_add_node(target, child, ISO_REPLACE_NEVER) < 0)
            iso_node_unref(child);
        else
            carried.insert(child);
    }
}

void IsoImageTree::dropUnwritten(IsoDir *dir, const QList<QPair<qint32, qint32>> &written,
                                 QStringList *leftOut) {
    for (IsoNode *child : childrenOf(dir)) {
        if (iso_node_get_type(child) == LIBISO_DIR) {
            dropUnwritten(reinterpret_cast<IsoDir *>(child), written, leftOut);
            continue;
        }
        if (iso_node_get_type(child) != LIBISO_FILE)
            continue;
        int count = 0;
        iso_file_section *raw = nullptr;
        if (iso_file_get_old_image_sections(reinterpret_cast<IsoFile *>(child), &count, &raw, 0) !=
            1)
            continue;
        std::unique_ptr<iso_file_section, decltype(&free)> sections(raw, &free);
        bool held = true;
        for (int i = 0; i < count && held; ++i) {
            const qint64 first = raw[i].block;
            const qint64 end = first + (qint64(raw[i].size) + 2047) / 2048;
            if (raw[i].size == 0)
                continue;
            held = std::any_of(written.begin(), written.end(), [&](const QPair<qint32, qint32> &s) {
                return first >= s.first && end <= qint64(s.first) + s.second;
            });
        }
        if (held)
            continue;
        if (leftOut)
            leftOut->append(itemOf(child).destPath);
        iso_node_remove(child);
    }
}

bool IsoImageTree::importSession(Recorder &recorder, qint32 startBlock,
                                 const QList<QPair<qint32, qint32>> &written, const ItemSink &added,
                                 const ReplaceQuestion &replace, QStringList *leftOut) {
    if (changing())
        return false;
    m_sizer.settle();
    IsoLibrary::DataSourcePtr src = RecorderDataSource::create(recorder);
    IsoReadOpts *rawOpts = nullptr;
    if (!src || iso_read_opts_new(&rawOpts, 0) < 0)
        return false;
    IsoLibrary::ReadOptsPtr opts(rawOpts);
    iso_read_opts_set_start_block(rawOpts, uint32_t(startBlock));
    IsoImage *rawImage = nullptr;
    if (iso_image_new("", &rawImage) < 0)
        return false;
    IsoLibrary::ImagePtr fresh(rawImage);
    iso_image_set_truncate_mode(rawImage, 0, 255);
    IsoReadImageFeatures *rawFeatures = nullptr;
    if (iso_image_import(rawImage, src.get(), rawOpts, &rawFeatures) < 0)
        return false;
    IsoLibrary::FeaturesPtr features(rawFeatures);
    if (!written.isEmpty())
        dropUnwritten(iso_image_get_root(rawImage), written, leftOut);

    // The disc's items become the image, with the items added before carried over.
    IsoLibrary::ImagePtr old = std::move(m_image);
    m_image = std::move(fresh);
    m_imported = true;
    const auto ids = {
        iso_image_get_volume_id(rawImage),         iso_image_get_system_id(rawImage),
        iso_image_get_volset_id(rawImage),         iso_image_get_publisher_id(rawImage),
        iso_image_get_data_preparer_id(rawImage),  iso_image_get_application_id(rawImage),
        iso_image_get_copyright_file_id(rawImage), iso_image_get_abstract_file_id(rawImage),
        iso_image_get_biblio_file_id(rawImage)};
    int i = 0;
    for (const char *id : ids)
        m_ids[i++] = QString::fromUtf8(id ? id : "").trimmed();
    QSet<IsoNode *> carried;
    mergeInto(iso_image_get_root(rawImage), QStringLiteral("\\"), iso_image_get_root(old.get()),
              replace, carried);
    // The disc's items are reported once the tree is whole; those added before were already.
    std::function<void(IsoDir *)> report = [&](IsoDir *dir) {
        for (IsoNode *child : childrenOf(dir)) {
            const auto type = iso_node_get_type(child);
            if ((type != LIBISO_DIR && type != LIBISO_FILE) || carried.contains(child))
                continue;
            if (added)
                added(itemOf(child));
            if (type == LIBISO_DIR)
                report(reinterpret_cast<IsoDir *>(child));
        }
    };
    report(iso_image_get_root(rawImage));
    m_files = 0;
    m_directories = 0;
    for (IsoNode *child : childrenOf(iso_image_get_root(rawImage)))
        countSubtree(child, 1);
    applyIdentifiers();
    changed();
    ++m_epoch;
    return true;
}

IsoLibrary::BurnSourcePtr IsoImageTree::makeStream(const StreamOptions &options, QString *error) {
    m_sizer.settle();
    IsoLibrary::BurnSourcePtr src = layoutStream(options, error);
    // The job's stream is laid out already: its size answers requests made while it runs.
    if (src)
        rememberSize(options, m_generation, qint64(src->get_size(src.get())) / 2048);
    return src;
}

quint64 IsoImageTree::sizeLayouts() {
    return g_sizeLayouts.load();
}

void IsoImageTree::rememberSize(const StreamOptions &options, quint64 generation, qint64 blocks) {
    m_lastBlocks = blocks;
    if (generation != m_generation)
        return; // the tree changed while events were served
    m_sizeBlocks = blocks;
    m_sizeGeneration = generation;
    m_sizeJoliet = options.joliet;
    m_sizeStart = options.startBlock;
}

IsoLibrary::BurnSourcePtr IsoImageTree::layoutStream(const StreamOptions &options, QString *error) {
    IsoWriteOpts *raw = nullptr;
    if (iso_write_opts_new(&raw, 0) < 0) {
        if (error)
            *error = QStringLiteral("The image options could not be made");
        return nullptr;
    }
    IsoLibrary::WriteOptsPtr opts(raw);
    // Level 3 lets a file of 4 GiB or more span several extents.
    iso_write_opts_set_iso_level(raw, Level);
    iso_write_opts_set_rockridge(raw, 1);
    iso_write_opts_set_joliet(raw, options.joliet ? 1 : 0);
    // A standalone image copies imported files; one that continues a disc points at them.
    const bool appendable = m_imported && !options.standalone;
    iso_write_opts_set_appendable(raw, appendable ? 1 : 0);
    iso_write_opts_set_ms_block(raw,
                                options.standalone ? 0 : uint32_t(std::max(0, options.startBlock)));
    // Folders below the eighth level are moved into one folder, as other makers do; readers
    // such as libarchive reject a disc whose moved folders lie loose in the root. Marked, the
    // folder is hidden from Rock Ridge readers, who see every folder back in its place.
    static char relocation[] = "rr_moved";
    iso_write_opts_set_rr_reloc(raw, relocation, 1);
    if (options.sizeOnly)
        iso_write_opts_set_will_cancel(raw, 1);
    else
        iso_write_opts_set_fifo_size(raw, FifoBlocks);
    ::burn_source *src = nullptr;
    IsoDir *root = iso_image_get_root(m_image.get());
    IsoNode *ownFolder = nullptr;
    const bool userHasOne = iso_dir_get_node(root, relocation, &ownFolder) == 1;
    const int r = iso_image_create_burn_source(m_image.get(), raw, &src);
    // libisofs leaves the folder it made in the image tree: it would show in the window's list,
    // and the next layout would find it there and no longer hide it. The stream being made
    // keeps its own reference.
    if (IsoNode *made = nullptr;
        !userHasOne && iso_dir_get_node(root, relocation, &made) == 1 && made)
        iso_node_remove(made);
    if (r < 0 || !src) {
        if (error)
            *error = QStringLiteral("The image could not be laid out (libisofs error %1: %2)")
                         .arg(iso_error_get_code(r))
                         .arg(QString::fromUtf8(iso_error_to_msg(r)));
        return nullptr;
    }
    return IsoLibrary::BurnSourcePtr(reinterpret_cast<BurnSource *>(src));
}

void IsoImageTree::skipped(const QByteArray &source, const QString &what) {
    if (m_notice)
        m_notice(QFile::decodeName(source), QStringLiteral("%1 is %2: it is left out of the image.")
                                                .arg(QFile::decodeName(source), what));
}

bool IsoImageTree::linkNode(IsoDir *parent, const QString &parentPath, const QString &name,
                            const QByteArray &source, const struct stat &st, bool useModifiedDate,
                            const ItemSink &added) {
    if (!validName(name))
        return false;
    std::vector<char> target(size_t(st.st_size > 0 ? st.st_size : PATH_MAX) + 1);
    const ssize_t n = readlink(source.constData(), target.data(), target.size() - 1);
    if (n <= 0)
        return false;
    target[size_t(n)] = '\0';
    IsoSymlink *link = nullptr;
    const QByteArray utf8 = name.toUtf8();
    IsoNode *existing = nullptr;
    if (iso_dir_get_node(parent, utf8.constData(), &existing) == 1)
        return false; // an item of that name came first
    if (iso_image_add_new_symlink(m_image.get(), parent, utf8.constData(), target.data(), &link) <
            0 ||
        !link)
        return false;
    auto *node = reinterpret_cast<IsoNode *>(link);
    setAttributes(node, st, false, useModifiedDate);
    iso_node_set_permissions(node, 0777);
    iso_node_add_xinfo(node, sourceXinfo, new QString(QFile::decodeName(source)));
    ++m_files;
    changed();
    if (added) {
        Item item{parentPath, joinDest(parentPath, name),       name, QFile::decodeName(source),
                  false,      dateOf(iso_node_get_mtime(node)), 0};
        item.node = node;
        added(item);
    }
    return true;
}

IsoImageTree::SourceCheck IsoImageTree::checkSources() {
    m_sizer.settle();
    SourceCheck check;
    std::function<bool(IsoDir *)> walk = [&](IsoDir *dir) {
        for (IsoNode *child : childrenOf(dir)) {
            if (iso_node_get_type(child) == LIBISO_DIR) {
                if (!walk(reinterpret_cast<IsoDir *>(child)))
                    return false;
                continue;
            }
            if (iso_node_get_type(child) != LIBISO_FILE)
                continue;
            IsoFile *file = reinterpret_cast<IsoFile *>(child);
            IsoStream *stream = iso_file_get_stream(file);
            if (!SourceFileStream::isSourceStream(stream))
                continue; // imported: its blocks are on the disc
            const QString path = SourceFileStream::sourcePath(stream);
            const qint64 added = qint64(iso_file_get_size(file));
            qint64 now = 0;
            switch (SourceFileStream::inspect(stream, &now)) {
            case SourceFileStream::SourceState::Same:
                break;
            case SourceFileStream::SourceState::Grew:
                SourceFileStream::resize(stream, now);
                changed();
                check.notices.append(
                    {path, QStringLiteral("%1 grew from %2 to %3 bytes since it was added: it "
                                          "is written whole, at its new size.")
                               .arg(path)
                               .arg(added)
                               .arg(now)});
                break;
            case SourceFileStream::SourceState::Shrunk:
                check.fileError = 2;
                check.failedPath = path;
                return false;
            case SourceFileStream::SourceState::Missing:
            case SourceFileStream::SourceState::NotRegular:
                check.fileError = 0;
                check.failedPath = path;
                return false;
            }
        }
        return true;
    };
    walk(iso_image_get_root(m_image.get()));
    return check;
}

qint64 IsoImageTree::imageBlocks(const StreamOptions &options, bool imageHeld) {
    if (imageHeld)
        return m_lastBlocks;
    // A call made from an event served while an outer call's layout runs waits for that one.
    m_sizer.wait();
    if (m_sizeGeneration == m_generation && m_sizeJoliet == options.joliet &&
        m_sizeStart == options.startBlock)
        return m_sizeBlocks;
    StreamOptions sizing = options;
    sizing.sizeOnly = true;
    const quint64 generation = m_generation;
    const qint64 blocks = m_sizer.run([this, sizing](const ImageSizer::Publish &publish) {
        IsoLibrary::BurnSourcePtr src = layoutStream(sizing, nullptr);
        ++g_sizeLayouts;
        publish(src ? qint64(src->get_size(src.get())) / 2048 : 0);
        // Freeing a layout of many files takes a good part of its time: it goes on here while
        // the caller already has the answer.
        src.reset();
    });
    rememberSize(options, generation, blocks);
    return blocks;
}
