/* Records of the device sections: general, locales, maintenance, serial ports and PTZ. */
#ifndef PROTOFIX_RECORDS_DEVICE_H
#define PROTOFIX_RECORDS_DEVICE_H

/* Names of the language table (KZDEV_LOCALES_CFG.byLanguage indexes it). */
#define KZ_LANGUAGE_COUNT 38

/* Capacities of the serial records. */
#define KZ_MAX_SERIAL_PORTS 16   /* ports of KZDEV_COMM_CFG, channels of KZDEV_PTZ_CFG */
#define KZ_MAX_COMM_PROTOCOLS 10 /* protocol names of KZDEV_COMM_CFG */
#define KZ_MAX_PTZ_PROTOCOLS 100 /* protocol names of KZDEV_PTZ_CFG */
#define KZ_PROTOCOL_NAME_LEN 16

#ifdef __cplusplus
extern "C" {
#endif

/* "General": 260 bytes. */
typedef struct KZDEV_GENERAL_CFG {
    char szMachineName[64];       /* "MachineName" */
    char szMachineAddress[64];    /* "MachineAddress" */
    unsigned char reserved1[128]; /* further device fields, not converted */
    unsigned short wLocalNo;      /* "LocalNo" (merged into the device's current table) */
    unsigned char reserved2[2];   /* to the 4-byte alignment of the record */
} KZDEV_GENERAL_CFG;

/*
 * A daylight-saving point, 56 bytes: by date when nWeek is 0 (nYear, nMonth, nDay), by week
 * otherwise (nMonth, nWeek, nDay).
 */
typedef struct KZ_DST_POINT {
    int nYear;
    int nMonth;
    int nHour;
    int nMinute;
    int nWeek;
    int nDay;
    unsigned char reserved[32]; /* eight words of the device, not converted */
} KZ_DST_POINT;

/* "Locales" and "Language": 140 bytes. */
typedef struct KZDEV_LOCALES_CFG {
    unsigned int leadingWords[2]; /* not read by the conversions */
    KZ_DST_POINT stDSTStart;      /* "DSTStart" */
    KZ_DST_POINT stDSTEnd;        /* "DSTEnd" */
    unsigned char reserved1[8];   /* further device fields, not converted */
    unsigned char bDSTEnable;     /* "DSTEnable" */
    unsigned char reserved2[4];
    unsigned char byDateFormat; /* 0 yyyy-MM-dd, 1 MM-dd-yyyy, 2 dd-MM-yyyy */
    unsigned char reserved3[1];
    unsigned char byTimeFormat; /* 0 24-hour clock, otherwise 12-hour clock */
    unsigned char byLanguage;   /* index into the language table ("Language") */
    unsigned char reserved4[3]; /* to the 4-byte alignment of the record */
} KZDEV_LOCALES_CFG;

/* "AutoMaintain" (and "StorageGlobal", which converts byFileHoldTime in the same record). */
typedef struct KZDEV_AUTOMAINTAIN_CFG {
    unsigned int leadingWord;       /* not read by the conversions */
    unsigned char byAutoRebootDay;  /* 0 never, 1 every day, 2 to 8 the weekdays 0 to 6 */
    unsigned char byAutoRebootHour; /* hour of the reboot */
    unsigned char byFileHoldTime;   /* converted by "StorageGlobal" only */
    unsigned char reserved[1];      /* to the 4-byte alignment of the record */
} KZDEV_AUTOMAINTAIN_CFG;

/* One serial port ("Comm") or one channel's PTZ decoder link ("Ptz"): 8 bytes. */
typedef struct KZ_SERIAL_ATTR {
    unsigned char byDataBits;       /* data bits minus 5 */
    unsigned char byStopBits;       /* 0 one, 1 one and a half, 2 two */
    unsigned char byParity;         /* 0 none, 1 odd, 2 even, 3 mark, 4 space */
    unsigned char byBaudRate;       /* 0 300 ... 9 115200 */
    unsigned char byProtocol;       /* index into the record's protocol names */
    unsigned char byReserved;       /* not converted */
    unsigned char byAddress;        /* decoder address ("Ptz" only) */
    unsigned char byNumberInMatrix; /* decoder number in the matrix ("Ptz" only) */
} KZ_SERIAL_ATTR;

/* "Comm": 300 bytes. */
typedef struct KZDEV_COMM_CFG {
    unsigned int leadingWord; /* not read by the conversions */
    int nProtocolNum;         /* valid names of szProtocolName */
    char szProtocolName[KZ_MAX_COMM_PROTOCOLS][KZ_PROTOCOL_NAME_LEN];
    int nPortNum; /* valid ports of stAttr */
    KZ_SERIAL_ATTR stAttr[KZ_MAX_SERIAL_PORTS];
} KZDEV_COMM_CFG;

/* "Ptz": 1736 bytes; stAttr holds one entry per channel. */
typedef struct KZDEV_PTZ_CFG {
    unsigned int leadingWord; /* not read by the conversions */
    int nProtocolNum;         /* valid names of szProtocolName */
    char szProtocolName[KZ_MAX_PTZ_PROTOCOLS][KZ_PROTOCOL_NAME_LEN];
    KZ_SERIAL_ATTR stAttr[KZ_MAX_SERIAL_PORTS];
} KZDEV_PTZ_CFG;

#ifdef __cplusplus
}
#endif

#endif
