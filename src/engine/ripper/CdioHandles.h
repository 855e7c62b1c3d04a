#pragma once

#include <cdio/cdio.h>
#include <cdio/paranoia/cdda.h>
#include <cdio/paranoia/paranoia.h>

#include <memory>

// Owners of libcdio's handles, so that no path out of a read leaves one open.
struct CdioCloser {
    void operator()(CdIo_t *p) const { cdio_destroy(p); }
};
struct CddaCloser {
    void operator()(cdrom_drive_t *d) const { cdio_cddap_close_no_free_cdio(d); }
};
struct ParanoiaFreer {
    void operator()(cdrom_paranoia_t *p) const { cdio_paranoia_free(p); }
};
using CdioPtr = std::unique_ptr<CdIo_t, CdioCloser>;
using CddaPtr = std::unique_ptr<cdrom_drive_t, CddaCloser>;
using ParanoiaPtr = std::unique_ptr<cdrom_paranoia_t, ParanoiaFreer>;
