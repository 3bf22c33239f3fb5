/* Records of the recording and storage sections. */
#ifndef PROTOFIX_RECORDS_STORAGE_H
#define PROTOFIX_RECORDS_STORAGE_H

#ifdef __cplusplus
extern "C" {
#endif


#ifdef __cplusplus
}
#endif

#endif
