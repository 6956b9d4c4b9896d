/* What we use of extended attributes. */
#pragma once
#define XATTR_NOFOLLOW 0x0001
extern "C" int removexattr(const char* path, const char* name, int options);
