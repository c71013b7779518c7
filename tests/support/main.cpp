// The main of every test executable: after each test the program's global state must be as it was at the start,
// so that tests pass in any order and a forgotten pending failure shows where it arose.
#include "lib/ag.h"
#include "lib/disk.h"
#include "lib/platform.h"
#include "lib/xfail.h"

#include <gtest/gtest.h>

namespace
{
class CleanStateListener : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo &) override
    {
        EXPECT_STREQ(xCode, XNULL) << "a failure is still pending, raised at " << xFile << ":" << xLine;
        EXPECT_EQ(xDepth, 0);
        EXPECT_EQ(xHook, static_cast<void (*)()>(NULL));
        EXPECT_EQ(disk, &posixDisk);
        EXPECT_EQ(AgTolerance, 1e-13);
        xCode = XNULL;
        xDepth = 0;
        xHook = NULL;
        disk = &posixDisk;
        AgTolerance = 1e-13;
        CheckDefault(SetMessageSink, "message sink");
        CheckDefault(SetStatusSink, "status sink");
        CheckDefault(SetTerminateSink, "terminate sink");
        CheckDefault(SetCollateSink, "collate sink");
        CheckDefault(SetShortDateSink, "short date sink");
        CheckDefault(SetResTextSink, "resource text sink");
        CheckDefault(SetCurrencySymbol, "currency symbol");
    }

    /// Brings the default back, and asks whether it was there.
    template <class SERVICE>
    static void CheckDefault(SERVICE (*set)(SERVICE), const char *name)
    {
        SERVICE left = set(NULL);
        EXPECT_TRUE(left == set(NULL)) << name << " was not restored";
    }
};
} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new CleanStateListener);
    return RUN_ALL_TESTS();
}
