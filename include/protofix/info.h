/* The caller's request information for one section conversion. */
#ifndef PROTOFIX_INFO_H
#define PROTOFIX_INFO_H

/* What the caller's buffers hold (the mode field). */
#define PROTOFIX_MODE_RECORD 0 /* the section's fixed-layout C record */
#define PROTOFIX_MODE_TEXT 1   /* the NUL-terminated F5 text of an earlier-protocol device */

/* Sets of accepted modes, as listed per section in sections.def. */
#define PROTOFIX_ACCEPTS_RECORD 0x1u
#define PROTOFIX_ACCEPTS_TEXT 0x2u

/* Video standard field. */
#define PROTOFIX_STANDARD_PAL 0
#define PROTOFIX_STANDARD_NTSC 1

#ifdef __cplusplus
extern "C" {
#endif

/*
 * 80 bytes on an LP64 platform, copied with a plain byte copy: it owns nothing. Every pointer is
 * borrowed for the duration of the next Serialize or Deserialize.
 */
typedef struct PROTOCOL_FIX_INFO {
    int mode;         /* PROTOFIX_MODE_RECORD or PROTOFIX_MODE_TEXT */
    const char* name; /* section name, matched without regard to case; may be null */
    int channel;      /* written as "channel" in the envelope */
    /*
     * Serialize: the record, or the NUL-terminated F5 text, to convert. Serialize reads it only,
     * except in "RemoteStorageLimit", which sets each upload section's enable word from its flags.
     */
    void* input;
    /*
     * Serialize: bytes at input. Record mode does not read it (the device's conventions never
     * check it there), so input must be a whole record of the section's type. Only the sections
     * that say so read it: Encode refuses a length shorter than the part of its record it
     * converts, and ChannelTitle takes it as the width of its title buffer. Text mode reads the
     * F5 text up to its NUL whatever this says.
     */
    int inputLength;
    void* output; /* Deserialize: the record (or F5 text) to fill */
    /*
     * Deserialize: bytes at output. In record mode, as inputLength: read by Encode and
     * ChannelTitle only, so output must be a whole record of the section's type. In text mode,
     * the capacity of the F5 text: CReqConfigProtocolFix::Deserialize says how large it must be
     * and when the text comes back without a NUL.
     */
    int outputLength;
    int videoStandard;   /* PROTOFIX_STANDARD_PAL or PROTOFIX_STANDARD_NTSC */
    int subMode;         /* 0 plain fields, 1 fields merged into the current configuration */
    const char* current; /* the device's current reply, {"params":{"table":...}} */
    unsigned char reserved[8];
} PROTOCOL_FIX_INFO;

#ifdef __cplusplus
}
#endif

#endif
