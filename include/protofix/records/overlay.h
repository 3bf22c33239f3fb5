/* Records of the overlay sections: titles, covers, channel widget and watermark. */
#ifndef PROTOFIX_RECORDS_OVERLAY_H
#define PROTOFIX_RECORDS_OVERLAY_H

#ifdef __cplusplus
extern "C" {
#endif


#ifdef __cplusplus
}
#endif

#endif
