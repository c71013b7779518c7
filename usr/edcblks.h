// Ready blocks of the framework.
#ifndef USR_EDCBLKS_H
#define USR_EDCBLKS_H

#include "usr/edcbase1.h"
#include "usr/edcitem.h"

/// A block that shows one text, as tall as the text is.
class TEdcTextBlock : public TEdcBlock
{
public:
    TEdcTextBlock();
    ~TEdcTextBlock() override;
    void SetText(const char *s); // copied; NULL leaves none
    void SetFontRec(const TEdcFontRec *rec);
    using TEdcBlock::SetSize;
    void SetSize(double width, double height = 1, int unit = EDC_UREL);
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    void Paint(TDC &dc, const TRect &part) override;

private:
    char *source = NULL;            // owned
    const TEdcFontRec *font = NULL; // view; NULL: the default font
    TEdcText txt;
};

#endif
