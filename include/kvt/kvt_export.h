/**
 * @file
 * Marks the names that one library gives to others.
 */
#ifndef KVT_EXPORT_H
#define KVT_EXPORT_H

/** Stands before every name that a library exports. */
#if defined(__GNUC__)
#define KVT_EXPORT __attribute__((visibility("default")))
#else
#define KVT_EXPORT
#endif

#endif
