/* Assertions. */
#undef assert
#ifdef NDEBUG
#define assert(e) ((void)0)
#else
#define assert(e) ((e) ? (void)0 : __assert_rtn(__func__, __FILE__, __LINE__, #e))
#endif
#ifndef ZELVANE_CHECK_ASSERT
#define ZELVANE_CHECK_ASSERT
#ifdef __cplusplus
extern "C"
#endif
    void
    __assert_rtn(const char*, const char*, int, const char*) __attribute__((noreturn));
#ifndef __cplusplus
#define static_assert _Static_assert
#endif
#endif
