// A window on a desk with screens of different display scales.
#include "support/folder.h"
#include "support/testapp.h"
#include "win/dc.h"
#include "win/testdoor.h"
#include "win/window.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace
{
class Sheet : public TWindow
{
public:
    void Paint(TDC &dc, bool, const TRect &rect) override
    {
        painted = painted | rect;
        dc.FillRect(GetClientRect(), SolidBrush({10, 200, 30}));
    }
    void EvSize(TSizeKind, TSize size) override { sizes.push_back(size); }
    void EvMouseMove(unsigned, TPoint p) override { at = p; }
    TRect painted;
    std::vector<TSize> sizes;
    TPoint at;
};
} // namespace

TEST(Screens, BackingImageIsBuiltAnewAtTheScaleOfItsScreen)
{
    FOLDER folder;
    std::string config = folder.Path("screens.json");
    std::ofstream(config) << R"({"screens": [
        {"name": "left", "x": 0, "y": 0, "width": 800, "height": 600, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "right", "x": 800, "y": 0, "width": 800, "height": 600, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1.5}]})";
    setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + config).c_str(), 1);
    TestApplication();
    Sheet sheet;
    sheet.Create();
    testdoor::ResizeClient(sheet, {60, 40});
    EXPECT_EQ(sheet.Dpi(), 96);
    TClientDC dc(sheet);
    EXPECT_EQ(dc.DpiX(), 96);

    sheet.sizes.clear();
    sheet.painted = {};
    testdoor::MoveToScreen(sheet, 1);
    EXPECT_EQ(sheet.Dpi(), 144);
    EXPECT_EQ(dc.DpiX(), 144) << "a context that is kept measures anew";
    EXPECT_EQ(sheet.GetClientRect(), (TRect{0, 0, 90, 60}));
    ASSERT_FALSE(sheet.sizes.empty());
    EXPECT_EQ(sheet.sizes.back(), (TSize{90, 60}));
    EXPECT_EQ(sheet.painted, (TRect{0, 0, 90, 60}));
    EXPECT_EQ(testdoor::Pixel(sheet, {89, 59}), (TColor{10, 200, 30}));
    testdoor::Move(sheet, {88, 57});
    EXPECT_EQ(sheet.at, (TPoint{88, 57}));
}
