#pragma once

#include <QString>

class QTreeWidgetItem;

// What the frame's image handlers need of the data window, which lives in a library above the
// frame's: the tree of directories and the file list, kept by destination path. The open data
// window registers itself here while it exists. UI thread.
class DataImageMirror {
public:
    virtual ~DataImageMirror();

    // The open data window, or null.
    static DataImageMirror *current();

    // The node of a destination path, or null.
    virtual QTreeWidgetItem *node(const QString &key) const = 0;
    // A directory node below the node of `parentKey` (the root when that is unknown).
    virtual QTreeWidgetItem *addNode(const QString &parentKey, const QString &key,
                                     const QString &text, const QString &image,
                                     const QString &selectedImage) = 0;
    virtual void removeNode(const QString &key) = 0;
    // The node and every node below it take the new path as the start of their keys.
    virtual void rekeyNode(const QString &oldKey, const QString &newKey) = 0;
    virtual void addFileRow(const QString &key, const QString &text, const QString &size,
                            const QString &date) = 0;
    // Every row of the list and every node of the tree.
    virtual void clearImage() = 0;
    virtual void setCaption(const QString &caption) = 0;

protected:
    DataImageMirror();
};
