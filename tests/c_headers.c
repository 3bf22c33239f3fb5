/* The public records compile as C, and their sizes hold there too. */
#include <protofix/protofix.h>

typedef char info_is_80_bytes[sizeof(PROTOCOL_FIX_INFO) == 80 ? 1 : -1];
typedef char net_cfg_is_1972_bytes[sizeof(KZDEV_NET_CFG) == 1972 ? 1 : -1];
typedef char handler_is_956_bytes[sizeof(KZ_MSG_HANDLE_EX) == 956 ? 1 : -1];
typedef char locales_is_140_bytes[sizeof(KZDEV_LOCALES_CFG) == 140 ? 1 : -1];
typedef char ptz_is_1736_bytes[sizeof(KZDEV_PTZ_CFG) == 1736 ? 1 : -1];

int protofix_c_headers_compile(void);
int protofix_c_headers_compile(void) {
    KZDEV_ALARMIN_CFG alarm = {0};
    tagKZ_TSECT sect = {0};
    return alarm.enable + sect.enable;
}
