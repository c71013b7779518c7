// Tool bar and status bar.
#ifndef WIN_GADGETS_H
#define WIN_GADGETS_H

#include "win/window.h"
#include <memory>
#include <vector>

class TDecoratedFrame;

/// Font of a bar's texts.
struct TGadgetWindowFont {
    int points = 10;
    bool bold = false;
    bool italic = false;
};

class TGadget
{
public:
    virtual ~TGadget() = default;
};

class TSeparatorGadget : public TGadget
{
};

/// A button with a picture of the resources. Its tooltip is the command's string behind the line break;
/// pointing at it shows the text before the break, if there is one, in the status line.
class TButtonGadget : public TGadget
{
public:
    TButtonGadget(int pictureId, int commandId) : picture(pictureId), command(commandId) {}
    const int picture;
    const int command;
};

class TControlBar : public TWindow
{
public:
    explicit TControlBar(const TGadgetWindowFont &font = TGadgetWindowFont());
    ~TControlBar() override;
    void Insert(std::unique_ptr<TGadget> gadget); // at the end, before Create()
    void Create() override;
    /// Asks the frame for each button and shows the answers.
    void IdleEnable(TDecoratedFrame &frame);
    /// As a click on the button does it. False where it is grey or there is none.
    bool Press(int command);

private:
    struct BarImpl;
    std::unique_ptr<BarImpl> bar;
};

class TStatusBar : public TWindow
{
public:
    ~TStatusBar() override;
    void Create() override;
    void Paint(TDC &dc, bool erase, const TRect &rect) override;
    /// Sets the text and paints the bar at once, without the message loop: progress shows during long work.
    void SetText(const char *text); // Windows-1252
    const std::string &Text() const { return text; }
    /// A field of its own at the right edge; an empty text hides it.
    void SetRightText(const char *text);
    const std::string &RightText() const { return rightText; }

private:
    void Show();
    std::string text;
    std::string rightText;
};

#endif
