// The macros of the failure protocol. Always the last include of a source file: __test is a name inside the
// standard library. A header that uses them includes this behind its other includes and ends with lib/xoff.h.
//
//     T *result = NULL;                // what the caller gets, also when entry is refused
//     __enter
//         result = Make(); __test;     // after each call that can fail
//     __point
//         Undo();                      // only while a failure is pending; tests are off here
//     __treat
//     return result;
//
// Labels are local to the block, so guarded blocks may follow each other, nest, and stand in lambdas; the names
// of an inner block hide those of the outer one on purpose. `return` inside a guarded body skips the check at
// __point; tools/check refuses it.
#include "lib/xoff.h"
#include "lib/xfail.h"
#include <new>

#define __enter                                                                                                \
    {                                                                                                          \
        __label__ xRepair_, xLeave_;                                                                           \
        if (XPending())                                                                                        \
            goto xLeave_;                                                                                      \
        try {                                                                                                  \
            _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wshadow\"")                      \
                [[maybe_unused]] constexpr int xSection_ = 0;                                                  \
            _Pragma("GCC diagnostic pop")                                                                      \
            {

#define __test                                                                                                 \
    do {                                                                                                       \
        if (XPending())                                                                                        \
            goto xRepair_;                                                                                     \
    } while (0)

#define __raise(code)                                                                                          \
    do {                                                                                                       \
        XRaise((code), __FILE__, __LINE__);                                                                    \
        goto xRepair_;                                                                                         \
    } while (0)

#define __point                                                                                                \
    }                                                                                                          \
    XClosed(__FILE__, __LINE__);                                                                               \
    }                                                                                                          \
    catch (const std::bad_alloc &)                                                                             \
    {                                                                                                          \
        XCaught(XALLOC, __FILE__, __LINE__);                                                                   \
    }                                                                                                          \
    catch (...)                                                                                                \
    {                                                                                                          \
        XCaught(XUNKNOWN, __FILE__, __LINE__);                                                                 \
    }                                                                                                          \
    xRepair_:                                                                                                  \
    __attribute__((unused));                                                                                   \
    _Pragma("GCC diagnostic push")                                                                             \
        _Pragma("GCC diagnostic ignored \"-Wshadow\"") if (XSection xScope_; xScope_)                          \
    {                                                                                                          \
        try {                                                                                                  \
            [[maybe_unused]] constexpr int xSection_ = 1;                                                      \
            _Pragma("GCC diagnostic pop")                                                                      \
            {

#define __treat                                                                                                \
    }                                                                                                          \
    }                                                                                                          \
    catch (const std::bad_alloc &)                                                                             \
    {                                                                                                          \
        TerminateOn(XALLOC, __FILE__, __LINE__);                                                               \
    }                                                                                                          \
    catch (...)                                                                                                \
    {                                                                                                          \
        TerminateOn(XUNKNOWN, __FILE__, __LINE__);                                                             \
    }                                                                                                          \
    }                                                                                                          \
    xLeave_:                                                                                                   \
    __attribute__((unused));                                                                                   \
    }

#define __repair XTakeOff(xSection_)

#define __report                                                                                               \
    do {                                                                                                       \
        if (xRepaired != XNULL && xHook)                                                                       \
            xHook();                                                                                           \
    } while (0)
