/*
 * kvt_export.h - marks the names that one library gives to others.
 */
#ifndef KVT_EXPORT_H
#define KVT_EXPORT_H

#if defined(__GNUC__)
#define KVT_EXPORT __attribute__((visibility("default")))
#else
#define KVT_EXPORT
#endif

#endif
