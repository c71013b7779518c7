// Numbers of the hall on their way into the records of dialogs and back.
#ifndef USR_ZULVALUE_H
#define USR_ZULVALUE_H

#include "usr/edcdlg.h"
#include "usr/edcutils.h"

/// A number leaves the noise of sums behind on its way to a dialog; a field that is undefined leaves the hall's
/// own as it is.
/// @param unit  what one of the dialog's units is in the hall's
inline void ZulExchange(int mode, TEdcFloat &field, double &number, double unit = 1)
{
    if (mode == EDC_XSTORE) {
        if (field.id != EDC_VUDF)
            number = field.value * unit;
        return;
    }
    TEdcFloat own(EdcRound(number / unit, EDC_NOISE));
    field.Exchange(mode, own);
}

#endif
