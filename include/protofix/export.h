/* What the library exports: the request classes and the text helpers of the public headers. A
 * shared build hides every other symbol. */
#ifndef PROTOFIX_EXPORT_H
#define PROTOFIX_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define PROTOFIX_API __attribute__((visibility("default")))
#else
#define PROTOFIX_API
#endif

#endif
