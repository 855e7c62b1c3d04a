#pragma once

class QFileSystemModel;

// The file system models every folder tree and file list shares, so that a hundred browsers
// cost one watcher each. Made on first use, owned by the application. UI thread.
class FileSystemModels {
public:
    static QFileSystemModel *folders(); // folders only
    static QFileSystemModel *entries(); // folders and files
};
