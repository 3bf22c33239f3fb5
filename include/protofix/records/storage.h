/* Records of the recording and storage sections. */
#ifndef PROTOFIX_RECORDS_STORAGE_H
#define PROTOFIX_RECORDS_STORAGE_H

#include <protofix/records/alarm.h>

/* KZDEV_RECORD_CFG.byVideoStream: the recorded stream. */
#define KZ_RECORD_STREAM_MAIN 0
#define KZ_RECORD_STREAM_EXTRA1 1
#define KZ_RECORD_STREAM_EXTRA2 2
#define KZ_RECORD_STREAM_EXTRA3 3

/* KZDEV_NAS_CFG.byProtocol: how the storage server is reached. */
#define KZ_NAS_PROTOCOL_FTP 0
#define KZ_NAS_PROTOCOL_SMB 1
#define KZ_NAS_PROTOCOL_NFS 2
#define KZ_NAS_PROTOCOL_ISCSI 3

/* Upload schedules of the storage server: channels, and upload sections a day. */
#define KZ_NAS_CHANNELS 16
#define KZ_NAS_DAY_SECTIONS 2

#ifdef __cplusplus
extern "C" {
#endif

/* "Record" (schedule and pre-record) and "RecordSource" (stream) of one channel. 1184 bytes. */
typedef struct KZDEV_RECORD_CFG {
    int nReserved;                                     /* not read by the conversions */
    tagKZ_TSECT stSect[KZ_WEEK_DAYS][KZ_DAY_SECTIONS]; /* enable holds a record-type mask */
    unsigned char byPreRecord;                         /* pre-record length */
    unsigned char byReserved;                          /* not read by the conversions */
    unsigned char byVideoStream;                       /* KZ_RECORD_STREAM_* */
    unsigned char reserved[1];                         /* to the 4-byte alignment of the record */
} KZDEV_RECORD_CFG;

/* One upload section of the storage server: a time section and its three flags. 48 bytes. */
typedef struct KZ_NAS_TSECT {
    tagKZ_TSECT stSect;
    unsigned char byFlag0;
    unsigned char byFlag1;
    unsigned char byFlag2;
    unsigned char reserved[17];
} KZ_NAS_TSECT;

/* "NAS" (the storage server) and "RemoteStorageLimit" (its upload schedule and file limits).
   11284 bytes. */
typedef struct KZDEV_NAS_CFG {
    unsigned int leadingWord; /* not read by the conversions */
    unsigned char bEnable;
    char szAddress[16];
    unsigned short wPort;
    char szDirectory[240];
    char szUserName[64];
    char szPassword[64];
    int nFileLength;
    int nInterval;
    KZ_NAS_TSECT stChnTime[KZ_NAS_CHANNELS][KZ_WEEK_DAYS][KZ_NAS_DAY_SECTIONS];
    unsigned char byProtocol; /* KZ_NAS_PROTOCOL_* */
    unsigned char
        reserved[3]; /* not read by the conversions; szSubDirectory on a 4-byte boundary */
    char szSubDirectory[128];
} KZDEV_NAS_CFG;

/* "StorageGroup": whether full disks are overwritten. 8 bytes. */
typedef struct KZDEV_STORAGEGROUP_CFG {
    unsigned int leadingWord;  /* not read by the conversions */
    unsigned char byOverWrite; /* 1 overwrite the oldest recordings when full */
    unsigned char reserved[3]; /* to the 4-byte alignment of the record */
} KZDEV_STORAGEGROUP_CFG;

#ifdef __cplusplus
}
#endif

#endif
