// Assertions stay on in the released program: they stop a programming fault before it reaches a user's data.
// They are never for input. The text shown is the condition as it is meant to be read.
#ifndef LIB_XASSERT_H
#define LIB_XASSERT_H

#include "lib/xfail.h"

#define ASSERT(condition) ASSERT_AS(condition, #condition)

/// For a condition whose text must not follow the formatting of the source.
#define ASSERT_AS(condition, text) ((condition) ? (void)0 : AssertFailed(text, __FILE__, __LINE__))

#endif
