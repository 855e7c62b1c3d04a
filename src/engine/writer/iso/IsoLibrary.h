#pragma once

#include <cstdint>
#include <sys/types.h>

#include <libburn/libburn.h>
#include <libisofs/libisofs.h>

#include <memory>

// libburn declares its types in a namespace for C++, libisofs in the global one; they are the
// same C structure.
using BurnSource = burn::burn_source;

// libisofs set up once for the process, and the owners of its handles. Any thread.
namespace IsoLibrary {
// Starts libisofs on first use: UTF-8 names, and an abort severity that makes a source file
// that can't be read fail the image instead of being padded with zeros.
bool ensureStarted();

struct ImageDeleter {
    void operator()(IsoImage *p) const { iso_image_unref(p); }
};
struct WriteOptsDeleter {
    void operator()(IsoWriteOpts *p) const { iso_write_opts_free(p); }
};
struct ReadOptsDeleter {
    void operator()(IsoReadOpts *p) const { iso_read_opts_free(p); }
};
struct FeaturesDeleter {
    void operator()(IsoReadImageFeatures *p) const { iso_read_image_features_destroy(p); }
};
struct DataSourceDeleter {
    void operator()(IsoDataSource *p) const { iso_data_source_unref(p); }
};
// Cancels the image's writer thread if it still runs, waits for it and frees the source.
struct BurnSourceDeleter {
    void operator()(BurnSource *p) const;
};

using ImagePtr = std::unique_ptr<IsoImage, ImageDeleter>;
using WriteOptsPtr = std::unique_ptr<IsoWriteOpts, WriteOptsDeleter>;
using ReadOptsPtr = std::unique_ptr<IsoReadOpts, ReadOptsDeleter>;
using FeaturesPtr = std::unique_ptr<IsoReadImageFeatures, FeaturesDeleter>;
using DataSourcePtr = std::unique_ptr<IsoDataSource, DataSourceDeleter>;
using BurnSourcePtr = std::unique_ptr<BurnSource, BurnSourceDeleter>;
} // namespace IsoLibrary
