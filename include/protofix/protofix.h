// Everything a caller of protofix needs.
#ifndef PROTOFIX_PROTOFIX_H
#define PROTOFIX_PROTOFIX_H

#include <protofix/info.h>
#include <protofix/records/alarm.h>
#include <protofix/records/device.h>
#include <protofix/records/media.h>
#include <protofix/records/network.h>
#include <protofix/records/overlay.h>
#include <protofix/records/storage.h>

#ifdef __cplusplus
#include <protofix/ReqConfigProtocolFix.h>
#include <protofix/request.h>
#endif

#endif
