/* Records of the device sections: general, locales, maintenance, serial ports and PTZ. */
#ifndef PROTOFIX_RECORDS_DEVICE_H
#define PROTOFIX_RECORDS_DEVICE_H

#ifdef __cplusplus
extern "C" {
#endif

/* "AutoMaintain" (and "StorageGlobal", which converts byFileHoldTime in the same record). */
typedef struct KZDEV_AUTOMAINTAIN_CFG {
    unsigned int leadingWord;        /* not read by the conversions */
    unsigned char byAutoRebootDay;   /* 0 never, 1 every day, 2 to 8 the weekdays 0 to 6 */
    unsigned char byAutoRebootHour;  /* hour of the reboot */
    unsigned char byFileHoldTime;    /* converted by "StorageGlobal" only */
    unsigned char reserved[1];       /* to the 4-byte alignment of the record */
} KZDEV_AUTOMAINTAIN_CFG;

#ifdef __cplusplus
}
#endif

#endif
