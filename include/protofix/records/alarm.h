/* Records of the alarm and event sections: time sections, the event linkage, alarm inputs,
   fault events and video detection. */
#ifndef PROTOFIX_RECORDS_ALARM_H
#define PROTOFIX_RECORDS_ALARM_H

/* Bits of actionFlags that the table and the F5 text carry; other bits are kept as they are. */
#define EVENT_ACTION_RECORD 0x2u
#define EVENT_ACTION_PTZ 0x4u
#define EVENT_ACTION_MAIL 0x8u
#define EVENT_ACTION_TOUR 0x10u
#define EVENT_ACTION_TIP 0x20u
#define EVENT_ACTION_ALARMOUT 0x40u
#define EVENT_ACTION_BEEP 0x100u
#define EVENT_ACTION_VOICE 0x200u
#define EVENT_ACTION_SNAPSHOT 0x400u

/* KZ_PTZ_LINK.type. */
#define KZ_PTZ_LINK_NONE 0
#define KZ_PTZ_LINK_PRESET 1
#define KZ_PTZ_LINK_TOUR 2
#define KZ_PTZ_LINK_PATTERN 3

/* Channels of the linkage records. */
#define KZ_MSG_HANDLE_EX_CHANNELS 32
#define KZ_MSG_HANDLE_CHANNELS 16

/* Weekly schedules: days and time sections a day. */
#define KZ_WEEK_DAYS 7
#define KZ_DAY_SECTIONS 6

#ifdef __cplusplus
extern "C" {
#endif

/* A time section: a flag (or record-type mask) and a daily span. 28 bytes. */
typedef struct tagKZ_TSECT {
    int enable;
    int beginHour;
    int beginMinute;
    int beginSecond;
    int endHour;
    int endMinute;
    int endSecond;
} tagKZ_TSECT, KZ_TSECT;

/* PTZ action of one channel. */
typedef struct KZ_PTZ_LINK {
    int type;  /* KZ_PTZ_LINK_* */
    int value; /* preset, tour or pattern number */
} KZ_PTZ_LINK;

/* What the device does when an event fires, 32 channels. 956 bytes. */
typedef struct KZ_MSG_HANDLE_EX {
    unsigned int actionMask;
    unsigned int actionFlags; /* EVENT_ACTION_* */
    unsigned char alarmOutChannels[KZ_MSG_HANDLE_EX_CHANNELS];
    int alarmOutLatch;
    unsigned char recordChannels[KZ_MSG_HANDLE_EX_CHANNELS];
    int recordLatch;
    unsigned char snapshotChannels[KZ_MSG_HANDLE_EX_CHANNELS];
    unsigned char tourChannels[KZ_MSG_HANDLE_EX_CHANNELS];
    KZ_PTZ_LINK ptzLinks[KZ_MSG_HANDLE_EX_CHANNELS];
    int eventLatch;
    unsigned char auxOutChannels[KZ_MSG_HANDLE_EX_CHANNELS];
    unsigned char messageToNet;
    unsigned char mmsEnable;
    unsigned char snapshotTimes;
    unsigned char matrixEnable;
    unsigned int matrixMask;
    unsigned char logEnable;
    unsigned char snapshotPeriod;
    unsigned char reservedBlock[32];
    unsigned char attachmentType;    /* 0 picture, 1 video */
    unsigned char attachmentMaxSize; /* KiB */
    unsigned char attachmentMaxTime;
    unsigned char reservedTail[475];
} KZ_MSG_HANDLE_EX;

/* The older 16-channel linkage record. 244 bytes. */
typedef struct KZ_MSG_HANDLE {
    unsigned int actionMask;
    unsigned int actionFlags;
    unsigned char alarmOutChannels[KZ_MSG_HANDLE_CHANNELS];
    int alarmOutLatch;
    unsigned char recordChannels[KZ_MSG_HANDLE_CHANNELS];
    int recordLatch;
    unsigned char snapshotChannels[KZ_MSG_HANDLE_CHANNELS];
    unsigned char tourChannels[KZ_MSG_HANDLE_CHANNELS];
    KZ_PTZ_LINK ptzLinks[KZ_MSG_HANDLE_CHANNELS];
    int eventLatch;
    unsigned char auxOutChannels[KZ_MSG_HANDLE_CHANNELS];
    unsigned char messageToNet;
    unsigned char mmsEnable;
    unsigned char snapshotTimes;
    unsigned char matrixEnable;
    unsigned int matrixMask;
    unsigned char logEnable;
    unsigned char snapshotPeriod;
    unsigned char attachmentType;
    unsigned char attachmentMaxSize;
    unsigned char attachmentMaxTime;
} KZ_MSG_HANDLE;

/* "Alarm" and "NetAlarm": one alarm input. */
typedef struct KZDEV_ALARMIN_CFG {
    unsigned char sensorType; /* 0 normally closed ("NC"), 1 normally open ("NO") */
    unsigned char enable;
    tagKZ_TSECT timeSections[KZ_WEEK_DAYS][KZ_DAY_SECTIONS];
    KZ_MSG_HANDLE_EX handler;
} KZDEV_ALARMIN_CFG;

/* One storage fault: "StorageNotExist", "StorageLowSpace" or "StorageFailure". 2136 bytes. */
typedef struct KZ_STORAGE_EVENT {
    unsigned char enable;
    unsigned char lowerLimit; /* free-space limit; the low-space block only */
    tagKZ_TSECT timeSections[KZ_WEEK_DAYS][KZ_DAY_SECTIONS];
    KZ_MSG_HANDLE_EX handler;
} KZ_STORAGE_EVENT;

/* The three storage faults in one record; each section converts only its own block. */
typedef struct KZDEV_STORAGE_ALARM_CFG {
    KZ_STORAGE_EVENT notExist;
    KZ_STORAGE_EVENT lowSpace;
    KZ_STORAGE_EVENT failure;
} KZDEV_STORAGE_ALARM_CFG;

/* "NetAbort": the network is disconnected. */
typedef struct KZDEV_NETABORT_CFG {
    unsigned char enable;
    KZ_MSG_HANDLE_EX handler;
} KZDEV_NETABORT_CFG;

/* "IPConflict" and "MacConflict": an address conflict, with the older linkage record. */
typedef struct KZDEV_CONFLICT_CFG {
    unsigned char enable;
    KZ_MSG_HANDLE handler;
} KZDEV_CONFLICT_CFG;

/* The motion detection grid: at most 32 rows of 32 cells. */
#define KZ_MOTION_ROWS 32
#define KZ_MOTION_COLS 32

/* "MotionDetect": motion in the cells of a grid. */
typedef struct KZDEV_MOTION_DETECT_CFG {
    unsigned char enable;
    unsigned short level;                                 /* sensitivity */
    unsigned short rows;                                  /* rows of the grid in use */
    unsigned short cols;                                  /* columns in use */
    unsigned char region[KZ_MOTION_ROWS][KZ_MOTION_COLS]; /* [row][col]: 1 detect, 0 not */
    tagKZ_TSECT timeSections[KZ_WEEK_DAYS][KZ_DAY_SECTIONS];
    KZ_MSG_HANDLE_EX handler;
} KZDEV_MOTION_DETECT_CFG;

/* "LossDetect": the video signal is lost. */
typedef struct KZDEV_LOSS_DETECT_CFG {
    unsigned char enable;
    tagKZ_TSECT timeSections[KZ_WEEK_DAYS][KZ_DAY_SECTIONS];
    KZ_MSG_HANDLE_EX handler;
} KZDEV_LOSS_DETECT_CFG;

/* "BlindDetect": the camera is covered. */
typedef struct KZDEV_BLIND_DETECT_CFG {
    unsigned char enable;
    unsigned char level; /* sensitivity */
    tagKZ_TSECT timeSections[KZ_WEEK_DAYS][KZ_DAY_SECTIONS];
    KZ_MSG_HANDLE_EX handler;
} KZDEV_BLIND_DETECT_CFG;

#ifdef __cplusplus
}
#endif

#endif
