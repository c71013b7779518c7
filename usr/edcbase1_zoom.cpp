// The zoom of a view and its dialog.
#include "usr/edcbase1.h"

#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "win/dc.h"
#include "win/validator.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace
{
enum { DIALOG_ZOOM = 20100, CONTROL_ZOOM = 100 };
enum {
    PERCENT_DEFAULT = 100,
    LABEL_MAX = 256,        // bytes of a preset's label
    ENTRY_LABEL_MAX = 224,  // of these in an entry of the dialog
    LONG_SIDE = 8000 * 100, // px times percent
    SHORT_SIDE = 100 * 100,
};

int UsablePercent(int percent)
{
    return percent < 1 ? PERCENT_DEFAULT : percent;
}

/// A factor in whole percent, cut, at least 1.
int CutPercent(double factor)
{
    return static_cast<int>(std::clamp(factor * 100, 1.0, static_cast<double>(INT_MAX)));
}

/// The decimal number that the text begins with, limited to the integers; 0 where there is none.
int LeadingNumber(const std::string &text)
{
    long long number = strtoll(text.c_str(), NULL, 10);
    return static_cast<int>(std::clamp<long long>(number, INT_MIN, INT_MAX));
}

/// The box with the presets; its field of the transfer record is the choice.
class TZoomBox : public TComboBox
{
public:
    explicit TZoomBox(TDialog *aDialog) : TComboBox(aDialog, CONTROL_ZOOM, TEXT_SIZE) {}

    int Transfer(void *field, int direction) override
    {
        TEdcZoomChoice &choice = *static_cast<TEdcZoomChoice *>(field);
        if (direction == WIN_TRANSFER_SETDATA)
            Show(choice);
        else
            Read(choice);
        return sizeof choice;
    }

private:
    enum { TEXT_SIZE = 256 }; // of what can be typed, with the terminator

    void Show(const TEdcZoomChoice &choice)
    {
        ClearList();
        for (const std::string &entry : choice.entries)
            AddString(entry.c_str());
        if (choice.selected >= 0)
            SetSelIndex(choice.selected);
        else
            SetText(choice.text.c_str());
    }
    void Read(TEdcZoomChoice &choice) const
    {
        choice.text = Text();
        choice.selected = GetSelIndex();
    }
};
} // namespace

int TEdcZoom::Percent() const
{
    return presetIndex >= 0 && presetIndex < count ? percents[presetIndex] : custom;
}

void TEdcZoom::SetCustom(int percent)
{
    presetIndex = -1;
    custom = UsablePercent(percent);
}

void TEdcZoom::SetPreset(int index)
{
    ASSERT_AS(index >= 0, "presetIndex >= 0");
    presetIndex = index;
}

void TEdcZoom::Add(int percent, int label)
{
    if (count >= MAX)
        return;
    percents[count] = UsablePercent(percent);
    labels[count] = label;
    ++count;
}

int TEdcZoom::PresetPercent(int index) const
{
    ASSERT_AS(index >= 0 && index < count, "presetIndex >= 0 && presetIndex < count");
    return percents[index];
}

const char *TEdcZoom::PresetLabel(int index, int maxlen) const
{
    static char label[LABEL_MAX + 1];
    ASSERT_AS(index >= 0 && index < count, "presetIndex >= 0 && presetIndex < count");
    ASSERT(maxlen >= 0);
    int room = std::min<int>(maxlen, LABEL_MAX) + 1;
    StrCopy(label, labels[index] != 0 ? GetResString(labels[index], room) : "", room);
    return label;
}

int TEdcZoom::Fit(const TDC &dc, const TEdcSize &size, int w, int h, int mode) const
{
    TSize pixels = size.ToPixels(dc, 1.0);
    if (pixels.cx <= 0 || pixels.cy <= 0)
        return PERCENT_DEFAULT;
    double scaleX = static_cast<double>(w) / pixels.cx;
    double scaleY = static_cast<double>(h) / pixels.cy;
    ASSERT(scaleX >= 0 && scaleY >= 0);
    switch (mode) {
    case 1:
        return CutPercent(std::min(scaleX, scaleY));
    case 2:
        return CutPercent(std::max(scaleX, scaleY));
    case 3:
        return CutPercent(scaleX);
    default:
        return PERCENT_DEFAULT;
    }
}

void TEdcZoom::Limit(const TDC &dc, const TEdcSize &size)
{
    TSize pixels = size.ToPixels(dc, 1.0);
    int upper = PERCENT_DEFAULT;
    int lower = PERCENT_DEFAULT;
    if (pixels.cx > 0 && pixels.cy > 0) {
        upper = std::max(LONG_SIDE / std::max(pixels.cx, pixels.cy), 1);
        lower = std::clamp(SHORT_SIDE / std::min(pixels.cx, pixels.cy) + 1, 1, upper);
    }
    for (int i = 0; i < count; ++i)
        percents[i] = std::clamp(percents[i], lower, upper);
    custom = std::clamp(custom, lower, upper);
}

void TEdcZoomChoice::Load(const TEdcZoom &zoom)
{
    entries.clear();
    for (int i = 0; i < zoom.count; ++i)
        entries.push_back(EdcFormat("%s (%d%%)", zoom.PresetLabel(i, ENTRY_LABEL_MAX), zoom.PresetPercent(i)));
    bool preset = zoom.presetIndex >= 0 && zoom.presetIndex < zoom.count;
    selected = preset ? zoom.presetIndex : -1;
    text = preset ? entries[static_cast<size_t>(selected)] : EdcFormat("%d%%", zoom.custom);
}

void TEdcZoomChoice::Store(TEdcZoom &zoom) const
{
    if (selected >= 0)
        zoom.SetPreset(selected);
    else
        zoom.SetCustom(LeadingNumber(text));
}

TEdcZoomDialog::TEdcZoomDialog(TWindow *aParent, TEdcZoomChoice &choice) : TDialog(aParent, DIALOG_ZOOM)
{
    SetTransferRecord(&choice);
    new TZoomBox(this);
}
