/* Records of the media sections: encoder and picture. */
#ifndef PROTOFIX_RECORDS_MEDIA_H
#define PROTOFIX_RECORDS_MEDIA_H

#include <protofix/records/alarm.h>

/* Stream formats of KZDEV_ENCODE_CFG. */
#define KZ_ENCODE_MAIN_FORMATS 3
#define KZ_ENCODE_EXTRA_FORMATS 3
#define KZ_ENCODE_SNAP_FORMATS 2

/* KZ_VIDEOENC_OPT.quality: bit 7 set, the quality is a percentage (range 100); clear, a level
 * (range 6). Bits 0..6 hold the value. */
#define KZ_QUALITY_PERCENT 0x80u
#define KZ_QUALITY_VALUE 0x7Fu

/* KZ_VIDEOENC_OPT.bitRateControl. */
#define KZ_BITRATE_CBR 0
#define KZ_BITRATE_VBR 1

/* KZ_VIDEOENC_OPT.profile. */
#define KZ_PROFILE_BASELINE 1
#define KZ_PROFILE_MAIN 2
#define KZ_PROFILE_EXTENDED 3
#define KZ_PROFILE_HIGH 4

/* KZ_VIDEOENC_OPT.audioCompression. */
#define KZ_AUDIO_G711A 0
#define KZ_AUDIO_PCM 1
#define KZ_AUDIO_G711MU 2
#define KZ_AUDIO_AMR 3
#define KZ_AUDIO_AAC 4

/* KZDEV_VIDEO_STANDARD_CFG.videoStandard. */
#define KZ_VIDEO_STANDARD_PAL 0
#define KZ_VIDEO_STANDARD_NTSC 1
#define KZ_VIDEO_STANDARD_SECAM 2

/* Colour periods of KZDEV_VIDEO_COLOR_CFG. */
#define KZ_VIDEO_COLOR_PERIODS 2

#ifdef __cplusplus
extern "C" {
#endif

/* Video compression codes (KZ_VIDEOENC_OPT.compression). */
typedef enum tagNET_EM_VIDEO_COMPRESSION {
    EM_VIDEO_COMPRESSION_MPEG4 = 0,
    EM_VIDEO_COMPRESSION_MS_MPEG4 = 1,
    EM_VIDEO_COMPRESSION_MPEG2 = 2,
    EM_VIDEO_COMPRESSION_MPEG1 = 3,
    EM_VIDEO_COMPRESSION_H263 = 4,
    EM_VIDEO_COMPRESSION_MJPG = 5,
    EM_VIDEO_COMPRESSION_FCC_MPEG4 = 6,
    EM_VIDEO_COMPRESSION_H264 = 7,
    EM_VIDEO_COMPRESSION_H265 = 8,
    EM_VIDEO_COMPRESSION_SVAC = 9,
    /* Not a code: gives the type the range of an int, so any code a caller holds is a value. */
    EM_VIDEO_COMPRESSION_INT_RANGE = -2147483647 - 1
} tagNET_EM_VIDEO_COMPRESSION,
    NET_EM_VIDEO_COMPRESSION;

/* One stream format. 24 bytes. */
typedef struct KZ_VIDEOENC_OPT {
    unsigned char videoEnable;    /* 1: the stream's video is on */
    unsigned char bitRateControl; /* KZ_BITRATE_* */
    unsigned char fps;            /* frames per second; in a snapshot format the byte is signed:
                                        -n (256 - n here) is one picture every n seconds */
    unsigned char compression;    /* tagNET_EM_VIDEO_COMPRESSION */
    unsigned char imageSize;      /* image-size code 0..32 */
    unsigned char quality;        /* KZ_QUALITY_PERCENT | value */
    unsigned short bitRate;
    unsigned char audioEnable;      /* 1: the stream's audio is on */
    unsigned char audioCompression; /* KZ_AUDIO_* */
    unsigned char reserved1[2];
    unsigned short depth; /* audio sample depth */
    unsigned char reserved2[1];
    unsigned char profile;  /* KZ_PROFILE_* */
    unsigned int frequency; /* audio sampling frequency */
    unsigned char gop;      /* key-frame interval */
    unsigned char reserved3[3];
} KZ_VIDEOENC_OPT;

/*
 * "Encode": the streams of one channel. 468 bytes: the formats end at byte 464, and 4 reserved
 * bytes follow, so a record passed at its size is long enough for the snapshot formats in both
 * directions.
 */
typedef struct KZDEV_ENCODE_CFG {
    unsigned char reserved1[36];
    KZ_VIDEOENC_OPT mainFormat[KZ_ENCODE_MAIN_FORMATS];
    KZ_VIDEOENC_OPT extraFormat[KZ_ENCODE_EXTRA_FORMATS];
    unsigned char reserved2[232];
    unsigned char snapEnable; /* non-zero: snapshots on */
    unsigned char reserved3[3];
    KZ_VIDEOENC_OPT snapFormat[KZ_ENCODE_SNAP_FORMATS]; /* fps (signed), compression, imageSize
                                                           and quality only */
    unsigned char reserved4[4];
} KZDEV_ENCODE_CFG;

/* One colour period: when it applies and its picture values. 36 bytes. */
typedef struct KZ_VIDEO_COLOR {
    tagKZ_TSECT timeSection; /* enable is a record-type mask, as in the recording records */
    unsigned char brightness;
    unsigned char contrast;
    unsigned char saturation;
    unsigned char hue;
    unsigned char reserved[4];
} KZ_VIDEO_COLOR;

/* "VideoColor". 252 bytes. */
typedef struct KZDEV_VIDEO_COLOR_CFG {
    unsigned char reserved[180];
    KZ_VIDEO_COLOR color[KZ_VIDEO_COLOR_PERIODS];
} KZDEV_VIDEO_COLOR_CFG;

/* "VideoInOptions": the camera's front end, by day and by night. 80 bytes. */
typedef struct KZDEV_VIDEOIN_OPTIONS_CFG {
    unsigned char reserved1[4];
    unsigned char exposureSpeed;
    unsigned char backlight;
    unsigned char reserved2[1];
    unsigned char mirror; /* 0/1 */
    unsigned char flip;
    unsigned char reserved3[1];
    unsigned char irisAuto;     /* 0/1 */
    unsigned char whiteBalance; /* white-balance code 0..11 */
    unsigned char signalFormat; /* signal-format code 0..5 */
    unsigned char rotate90;
    unsigned char reserved4[2];
    float exposureValue1;
    float exposureValue2;
    unsigned char reserved5[1];
    unsigned char sunriseHour;
    unsigned char sunriseMinute;
    unsigned char sunriseSecond;
    unsigned char sunsetHour;
    unsigned char sunsetMinute;
    unsigned char sunsetSecond;
    unsigned char nightWhiteBalance; /* white-balance code 0..11 */
    unsigned char nightGainRed;
    unsigned char nightGainBlue;
    unsigned char nightGainGreen;
    unsigned char nightGain;
    unsigned char nightGainAuto;
    unsigned char nightBrightnessThreshold;
    unsigned char nightReferenceLevel;
    unsigned char nightExposureSpeed;
    float nightExposureValue1;
    float nightExposureValue2;
    unsigned char reserved6[1];
    unsigned char nightWideDynamicRange;
    unsigned char reserved7[14];
    unsigned char gainRed;
    unsigned char gainBlue;
    unsigned char gainGreen;
    unsigned char flashMode;
    unsigned char flashValue;
    unsigned char flashPole;
    unsigned char externalSyncPhase;
    unsigned char flashPreValue;
    unsigned short externalSync;
    unsigned char reserved8[2];
    unsigned char wideDynamicRange;
    unsigned char reserved9[3];
} KZDEV_VIDEOIN_OPTIONS_CFG;

/* "VideoStandard". 4 bytes. */
typedef struct KZDEV_VIDEO_STANDARD_CFG {
    unsigned int videoStandard; /* KZ_VIDEO_STANDARD_* */
} KZDEV_VIDEO_STANDARD_CFG;

/* "MediaGlobal": only the packet length is converted. 200 bytes. */
typedef struct KZDEV_MEDIA_GLOBAL_CFG {
    unsigned char reserved[199];
    unsigned char packetLength;
} KZDEV_MEDIA_GLOBAL_CFG;

#ifdef __cplusplus
}
#endif

#endif
