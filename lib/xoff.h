// Takes the macros of lib/xon.h away again, at the end of a header that used them.
#undef __enter
#undef __test
#undef __raise
#undef __point
#undef __treat
#undef __repair
#undef __report
