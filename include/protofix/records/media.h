/* Records of the media sections: encoder and picture. */
#ifndef PROTOFIX_RECORDS_MEDIA_H
#define PROTOFIX_RECORDS_MEDIA_H

#ifdef __cplusplus
extern "C" {
#endif


#ifdef __cplusplus
}
#endif

#endif
