/* Records of the alarm and event sections: time sections, the event linkage and alarm inputs. */
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
    int type;   /* KZ_PTZ_LINK_* */
    int value;  /* preset, tour or pattern number */
} KZ_PTZ_LINK;

/* What the device does when an event fires, 32 channels. 956 bytes. */
typedef struct KZ_MSG_HANDLE_EX {
    unsigned int actionMask;
    unsigned int actionFlags;                    /* EVENT_ACTION_* */
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
    unsigned char attachmentType;                /* 0 picture, 1 video */
    unsigned char attachmentMaxSize;             /* KiB */
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
    unsigned char sensorType;    /* 0 normally closed ("NC"), 1 normally open ("NO") */
    unsigned char enable;
    tagKZ_TSECT timeSections[KZ_WEEK_DAYS][KZ_DAY_SECTIONS];
    KZ_MSG_HANDLE_EX handler;
} KZDEV_ALARMIN_CFG;

#ifdef __cplusplus
}
#endif

#endif
