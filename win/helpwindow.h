// The help in a window: contents at the left, the page beside them, above both the way back and forward and a
// search in the page. It shows what its file holds and pictures of the program, and asks nothing else for
// anything. Ctrl with the wheel, +, - or 0 changes the size of the text; Esc closes the window.
#ifndef WIN_HELPWINDOW_H
#define WIN_HELPWINDOW_H

#include "win/helpfile.h"
#include "win/window.h"

class THelpWindow : public TWindow
{
public:
    explicit THelpWindow(TWindow *aParent = NULL);
    ~THelpWindow() override;

    /// Reads a help file and shows its first page: XFOPEN, XFREAD; then it goes on with what it had.
    void OpenFile(const char *name);
    void Create() override;

    /// Shows a page, 0: the first one. False, and a note beside the search, where there is no such page.
    bool ShowContext(int context);
    int Context() const; // of the page that shows, 0 without a file
    bool Back();         // false where there is nowhere to go
    bool Forward();
    void FollowLink(const char *href); // "#10", as a click on it does; any other kind of link does nothing
    /// Looks for the text from the selection on, round the page's end, case ignored; Windows-1252.
    bool FindText(const char *text, bool backwards);
    int Zoom() const { return zoom; } // percent
    void SetZoom(int percent);        // limited to 50 to 300
    const THelpFile &File() const { return file; }

    // What a person sees, Windows-1252.
    std::string PageText() const;
    std::string SelectedText() const;
    std::string Note() const;

private:
    struct View;
    void ShowPage();
    void ShowContents();
    void SetNote(const char *utf8);
    void Go(size_t newPlace); // in the history

    THelpFile file;
    std::vector<int> history; // contexts in the order of their showing
    size_t place = 0;         // of the page that shows in it
    int zoom = 100;           // percent
    std::string note;         // UTF-8
    std::unique_ptr<View> view;
};

#endif
