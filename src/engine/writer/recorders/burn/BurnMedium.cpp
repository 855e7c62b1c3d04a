#include "BurnMedium.h"

#include "BurnDrive.h"

#include <QByteArray>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {
constexpr qint64 Block = 2048;

// A feature descriptor of the drive: present, and its first data byte.
struct Feature {
    bool present = false;
    unsigned char byte0 = 0;
};

Feature feature(burn::burn_drive *d, unsigned int code) {
    unsigned char flags = 0, length = 0;
    unsigned char *data = nullptr;
    Feature f;
    if (burn::burn_drive_get_feature(d, code, &flags, &length, &data, nullptr) > 0) {
        f.present = true;
        f.byte0 = data && length > 0 ? data[0] : 0;
    }
    free(data);
    return f;
}

QList<qint32> speedList(burn::burn_drive *d, int profile) {
    QList<qint32> speeds;
    burn::burn_speed_descriptor *list = nullptr;
    if (burn::burn_drive_get_speedlist(d, &list) > 0 && list) {
        speeds = BurnMedium::writeSpeeds(list, profile);
        burn::burn_drive_free_speedlist(&list);
    }
    return speeds;
}

qint32 clampBlocks(off_t bytes) {
    return qint32(std::clamp<qint64>(qint64(bytes) / Block, 0, INT32_MAX));
}

// The last complete session's start and the mode of its first track, from the drive's TOC.
void readToc(burn::burn_drive *d, MediumState &st, int *completeSessions) {
    *completeSessions = 0;
    burn::burn_disc *disc = burn::burn_drive_get_disc(d);
    if (!disc)
        return;
    int count = 0;
    burn::burn_session **sessions = burn::burn_disc_get_sessions(disc, &count);
    *completeSessions = count;
    for (int i = 0; i < count; ++i) {
        int tracks = 0;
        burn::burn_track **t = burn::burn_session_get_tracks(sessions[i], &tracks);
        for (int k = 0; k < tracks; ++k) {
            burn::burn_toc_entry entry{};
            burn::burn_track_get_entry(t[k], &entry);
            if ((entry.extensions_valid & 1) && !(burn::burn_track_get_mode(t[k]) & BURN_AUDIO))
                st.sessionExtents.append({entry.start_lba, entry.track_blocks});
        }
    }
    if (count > 0) {
        int tracks = 0;
        burn::burn_track **t = burn::burn_session_get_tracks(sessions[count - 1], &tracks);
        if (tracks > 0) {
            burn::burn_toc_entry entry{};
            burn::burn_track_get_entry(t[0], &entry);
            if (entry.extensions_valid & 1)
                st.lastSessionStart = entry.start_lba;
            const int mode = burn::burn_track_get_mode(t[0]);
            st.lastSessionMode = (mode & BURN_AUDIO) ? 0 : (mode & BURN_MODE2) ? 2 : 1;
        }
    }
    burn::burn_disc_free(disc);
}
} // namespace

QList<qint32> BurnMedium::writeSpeeds(const burn::burn_speed_descriptor *list, int profile) {
    QList<qint32> speeds;
    // The descriptors of GET PERFORMANCE (source 2) for the loaded profile are the ones
    // that speak of this medium; the mode page's (source 1) are the drive's in general.
    for (int pass = 0; pass < 2 && speeds.isEmpty(); ++pass) {
        for (auto *s = list; s; s = s->next) {
            const bool forMedium = s->source == 2 && s->profile_loaded == profile;
            if ((pass == 0 && !forMedium) || s->write_speed <= 0)
                continue;
            if (!speeds.contains(s->write_speed))
                speeds.append(s->write_speed);
        }
    }
    std::sort(speeds.begin(), speeds.end(), std::greater<>());
    return speeds;
}

qint32 BurnMedium::mediaTypeOf(int profile) {
    switch (profile) {
    case 0x08: // CD-ROM: shown as a CD-R with a closed last session
    case 0x09:
        return 255;
    case 0x0a:
        return 253;
    case 0x10:
    case 0x40: // BD-ROM: read-only like a DVD-ROM
        return 0;
    case 0x11:
    case 0x15:
    case 0x16:
    case 0x41: // BD-R: written once, session after session, like a DVD-R
    case 0x42:
        return 2;
    case 0x12:
    case 0x43: // BD-RE: written anywhere, like a DVD-RAM
    case 0xffff:
        return 1;
    case 0x13:
    case 0x14:
        return 3;
    case 0x1a:
    case 0x2a:
        return 9;
    case 0x1b:
    case 0x2b:
        return 10;
    default:
        return 254;
    }
}

bool BurnMedium::isOverwriteable(int profile) {
    return profile == 0x12 || profile == 0x13 || profile == 0x1a || profile == 0x2a ||
           profile == 0x43 || profile == 0xffff;
}

qint32 BurnMedium::discTypeOf(const char *text) {
    if (!text)
        return 255;
    if (std::strstr(text, "CD-I"))
        return 16;
    if (std::strstr(text, "XA"))
        return 32;
    if (std::strstr(text, "CD-DA") || std::strstr(text, "CD-ROM"))
        return 0;
    return 255;
}

bool BurnMedium::readBlocks(BurnDrive &drive, qint32 lba, qint32 count, char *buffer) {
    if (lba < 0 || count < 0)
        return false;
    off_t got = 0;
    const off_t want = off_t(count) * Block;
    // bit1: no message for a read error here, the caller reports it in its own terms.
    return burn::burn_read_data(drive.get(), off_t(lba) * Block, buffer, want, &got, 2) > 0 &&
           got == want;
}

BurnMedium::Assessment BurnMedium::assess(BurnDrive &drive) {
    Assessment a;
    burn::burn_drive *d = drive.get();
    MediumState &st = a.state;
    const burn::burn_disc_status status = burn::burn_disc_get_status(d);
    char name[80] = {};
    int profile = 0;
    burn::burn_disc_get_profile(d, &profile, name);
    a.profile = profile;
    if (status == burn::BURN_DISC_EMPTY || status == burn::BURN_DISC_UNGRABBED ||
        (status == burn::BURN_DISC_UNREADY && profile == 0))
        return a; // no medium
    st.mediaType = mediaTypeOf(profile);
    if (st.mediaType == 254)
        st.mediaType = 255; // a medium the table has no name for
    a.speeds = speedList(d, profile);
    st.maxWriteSpeed = a.speeds.isEmpty() ? burn::burn_drive_get_write_speed(d) : a.speeds.first();

    BurnLibrary::WriteOptsPtr opts(burn::burn_write_opts_new(d));
    a.overwriteable = isOverwriteable(profile);
    if (a.overwriteable) {
        // No table of contents: the sessions are found by their volume descriptors.
        const off_t space = burn::burn_disc_available_space(d, nullptr);
        st.capacityBlocks = clampBlocks(space);
        a.sessions = OverwriteSessions::scan(
            [&](qint32 lba, char *block) { return readBlocks(drive, lba, 1, block); },
            st.capacityBlocks);
        const qint32 next = OverwriteSessions::nextStart(a.sessions);
        st.nextWritableAddress = next;
        st.freeBlocks = next >= 0 ? std::max(0, st.capacityBlocks - next) : 0;
        if (a.sessions.isEmpty()) {
            st.discStatus = 0;
            st.lastSessionStatus = 0;
            st.discType = 255;
            st.sessionCount = 1;
        } else {
            st.discStatus = next >= 0 ? 1 : 2;
            st.lastSessionStatus = next >= 0 ? 0 : 3;
            st.discType = 0;
            st.lastSessionStart = a.sessions.last().start;
            st.lastSessionMode = 1;
            for (const OverwriteSessions::Session &s : a.sessions)
                st.sessionExtents.append({s.start, s.blocks});
            st.sessionCount = qint32(a.sessions.size()) + (next >= 0 ? 1 : 0);
        }
        return a;
    }

    burn::burn_write_opts_set_multi(opts.get(), 1);
    int completeSessions = 0;
    readToc(d, st, &completeSessions);
    if (status == burn::BURN_DISC_BLANK || status == burn::BURN_DISC_APPENDABLE) {
        int lba = 0, nwa = 0;
        if (burn::burn_disc_track_lba_nwa(d, opts.get(), 0, &lba, &nwa) > 0)
            st.nextWritableAddress = nwa;
        st.freeBlocks = clampBlocks(burn::burn_disc_available_space(d, opts.get()));
    } else {
        st.maxWriteSpeed = 0; // nothing more goes on this medium
    }
    const int incomplete = [&] {
        burn::burn_disc *disc = burn::burn_drive_get_disc(d);
        const int n = disc ? burn::burn_disc_get_incomplete_sessions(disc) : 0;
        if (disc)
            burn::burn_disc_free(disc);
        return n;
    }();
    switch (status) {
    case burn::BURN_DISC_BLANK:
        st.discStatus = 0;
        st.lastSessionStatus = 0;
        st.discType = 255;
        st.sessionCount = 1; // the empty session waiting for data, as the drive counts it
        break;
    case burn::BURN_DISC_APPENDABLE:
        st.discStatus = 1;
        st.lastSessionStatus = incomplete > 0 ? 1 : 0;
        st.sessionCount = completeSessions + 1;
        break;
    case burn::BURN_DISC_FULL:
        st.discStatus = 2;
        st.lastSessionStatus = 3;
        st.sessionCount = completeSessions;
        break;
    default:
        st.discStatus = 3;
        st.lastSessionStatus = 2;
        st.sessionCount = completeSessions;
        break;
    }
    if (status != burn::BURN_DISC_BLANK) {
        char discType[80] = {}, barCode[9] = {};
        unsigned int discId = 0;
        int appCode = 0, valid = 0;
        const bool cd = profile >= 0x08 && profile <= 0x0a;
        if (cd &&
            burn::burn_disc_get_cd_info(d, discType, &discId, barCode, &appCode, &valid) > 0 &&
            (valid & 1))
            st.discType = discTypeOf(discType);
        else
            st.discType = cd ? 255 : 0;
        if (st.discType == 32 && st.lastSessionMode == 1)
            st.lastSessionMode = 2;
        // The drive's own answer for the last session's start, as mkisofs -C takes it; the TOC
        // stands in when the drive gives none.
        int msc1 = -1;
        if (burn::burn_disc_get_msc1(d, &msc1) > 0 && msc1 >= 0)
            st.lastSessionStart = msc1;
    }
    return a;
}

quint64 BurnMedium::capabilities(BurnDrive &drive) {
    const burn::burn_drive_info &i = drive.info();
    burn::burn_drive *d = drive.get();
    quint64 caps = 0;
    auto set = [&](int code, bool on) {
        if (on)
            caps |= quint64(1) << code;
    };
    if (drive.isPseudo()) {
        // A file: read and written at any address, like a DVD-RAM; it simulates on request.
        set(3, true);
        set(4, true);
        set(5, true);
        set(10, true);
        set(41, i.sao_block_types != 0);
        set(42, i.tao_block_types != 0);
        return caps;
    }
    const Feature cdRead = feature(d, 0x1E), dvdRead = feature(d, 0x1F);
    const Feature plusRw = feature(d, 0x2A), plusR = feature(d, 0x2B);
    const Feature cdTao = feature(d, 0x2D), cdMastering = feature(d, 0x2E);
    const Feature dashR = feature(d, 0x2F);
    set(0, i.read_cdr || cdRead.present);
    set(1, i.read_cdrw || cdRead.present);
    set(3, i.read_dvdrom || dvdRead.present);
    set(4, i.read_dvdr || dvdRead.present);
    set(5, i.read_dvdram);
    set(6, i.write_cdr);
    set(7, i.write_cdrw);
    set(9, i.write_dvdr || dashR.present);
    set(10, i.write_dvdram);
    // BUF, the buffer underrun protection bit, stands in every write feature.
    set(36, (cdTao.byte0 & 0x40) || (cdMastering.byte0 & 0x40) || (dashR.byte0 & 0x40));
    set(37, dashR.present && (dashR.byte0 & 0x02));
    set(38, plusR.present && (plusR.byte0 & 0x01));
    set(39, plusRw.present && (plusRw.byte0 & 0x01));
    set(40, cdMastering.byte0 & 0x18); // raw, raw multisession
    set(41, (cdMastering.byte0 & 0x20) || dashR.present || plusR.present);
    set(42, cdTao.present);
    return caps;
}
