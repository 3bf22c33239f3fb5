/* Records of the overlay sections: titles, covers, channel widget and watermark. */
#ifndef PROTOFIX_RECORDS_OVERLAY_H
#define PROTOFIX_RECORDS_OVERLAY_H

/* Custom titles of a channel and covers of a channel. */
#define KZ_MAX_OSD_TITLES 8
#define KZ_MAX_COVERS 16

/* Width of the default channel-title buffer. */
#define KZ_CHANNEL_TITLE_LEN 64

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The channel title is a plain character buffer: the section reads at most the request's
 * inputLength bytes of it (Serialize) and writes at most outputLength bytes, the NUL included
 * (Deserialize). This record is a buffer of the default width, for callers that have none of
 * their own; a caller with a longer or shorter buffer passes that buffer and its size.
 */
typedef struct KZ_CHANNEL_TITLE {
    char name[KZ_CHANNEL_TITLE_LEN];
} KZ_CHANNEL_TITLE;

/*
 * One custom title. 96 bytes. Colour byte k is element k of the table's colour array; as a
 * word, byte k is bits 8k..8k+7.
 */
typedef struct KZ_OSD_TITLE {
    unsigned char frontColor[4];
    unsigned char backColor[4];
    unsigned int rect[4]; /* left, top, right, bottom */
    unsigned char previewBlend;
    unsigned char encodeBlend;
    unsigned char reserved[6];
    char text[64];
} KZ_OSD_TITLE;

/* The custom titles of a channel. 772 bytes. */
typedef struct KZDEV_VIDEOWIDGET_OSD_CFG {
    unsigned char reserved[4];
    KZ_OSD_TITLE title[KZ_MAX_OSD_TITLES];
} KZDEV_VIDEOWIDGET_OSD_CFG;

/*
 * One privacy cover. 72 bytes. The colour word holds the table's elements out of order:
 * byte 0 = "FrontColor"[2], byte 1 = [1], byte 2 = [0], byte 3 = [3] (byte k is bits 8k..8k+7).
 */
typedef struct KZ_COVER {
    long long rect[4]; /* left, top, right, bottom */
    unsigned int frontColor;
    unsigned char reserved1[1];
    unsigned char encodeBlend;  /* 1 = on */
    unsigned char previewBlend; /* 1 = on */
    unsigned char reserved2[33];
} KZ_COVER;

/* The covers of a channel. 1192 bytes. */
typedef struct KZDEV_VIDEOWIDGET_COVER_CFG {
    unsigned char reserved1[36];
    unsigned char maxCoverCount; /* set by the caller: covers the device supports */
    unsigned char coverCount;
    unsigned char reserved2[2];
    KZ_COVER cover[KZ_MAX_COVERS];
} KZDEV_VIDEOWIDGET_COVER_CFG;

/*
 * Placement and colours of the channel-name and time overlays. 352 bytes: the fields end at
 * byte 345 and the record is padded to its 8-byte alignment. Colour byte k is element k of the
 * table's colour array (byte k of the word is bits 8k..8k+7).
 */
typedef struct KZDEV_VIDEOWIDGET_CHANNEL_CFG {
    unsigned char reserved1[256];
    unsigned int timeFrontColor;
    unsigned int timeBackColor;
    long long timeRect[4];         /* left, top, right, bottom */
    unsigned char timeEncodeBlend; /* 1 = on */
    unsigned char timeShowWeek;    /* 1 = on */
    unsigned char reserved2[6];
    unsigned int titleFrontColor;
    unsigned int titleBackColor;
    long long titleRect[4];         /* left, top, right, bottom */
    unsigned char titleEncodeBlend; /* 1 = on */
    unsigned char reserved3[7];
} KZDEV_VIDEOWIDGET_CHANNEL_CFG;

/* The video watermark. 144 bytes. */
typedef struct KZDEV_WATERMARK_CFG {
    unsigned char reserved1[4];
    unsigned int enable; /* 1 = on */
    unsigned char reserved2[4];
    unsigned int dataType; /* 1 once a text is stored */
    char string[128];
} KZDEV_WATERMARK_CFG;

#ifdef __cplusplus
}
#endif

#endif
