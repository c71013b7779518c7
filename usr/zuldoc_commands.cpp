// The commands of the application: the data dialogs, the catalogues, help and manual.
#include "lib/cde.h"
#include "lib/disk.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "usr/zulairht.h"
#include "usr/zuldoc.h"
#include "usr/zulhole.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/guard.h"
#include "win/shell.h"

#include "lib/xon.h"

namespace
{
enum {
    COMMAND_NO_LOGO = 1501, // the program's own: its logo is missing
    COMMAND_ARTICLE = 1503,
    COMMAND_PERIOD = 1505,
    COMMAND_INSULATION = 1507,
    COMMAND_ENERGY = 1509,
    COMMAND_HOLE_TYPES = 1511,
    COMMAND_AIR_HEATER_TYPES = 1513,
    COMMAND_HELP = 1517,
    COMMAND_SHORT_GUIDE = 1519,
    COMMAND_ABOUT = 1521,
    COMMAND_HYGIENE = 1523,
    COMMAND_UPDATE_BUTTON = 1525,
    COMMAND_CONCLUSION = 1527,
    COMMAND_MANUAL = 1529,
    COMMAND_RECALC = 20023,
};
enum { CONTEXT_ABOUT = 10, CONTEXT_SHORT_GUIDE = 11 };
enum { TEXT_NO_VIEWER = 20206 };
const char helpName[] = "Zulerio.hlp";
const char manualName[] = "Torvane.pdf";

CdeFILENAME BesideProgram(const char *name)
{
    CdeFILENAME path(ProgramFolder());
    path.AddName(name);
    return path;
}

void ShowHelp(TWindow *owner, int context)
{
    __enter
        int result = WinHelp(BesideProgram(helpName), context); __test;
        if (result <= 32) {
            MessageBox(owner, EdcFormat("Cannot start Winhlp32 viewer (%d)", result).c_str(),
                       "Unexpected situation", WIN_BOX_OK, WIN_ICON_EXCLAMATION); __test;
        }
    __point
    __treat
}

template <class CATALOG>
void EditCatalog()
{
    __enter
        CATALOG catalog(NULL); __test;
        catalog.Edit(); __test;
        catalog.Save(); __test;
    __point
    __treat
}

/// False where there is no frame.
bool PostToFrame(int id)
{
    TApplication *application = TApplication::Current();
    if (!application || !application->MainWindow())
        return false;
    application->MainWindow()->PostCommand(id);
    return true;
}
} // namespace

void ZulShowPdf(TWindow *owner, const CdeFILENAME &path)
{
    __enter
        bool isShown = path.HasExt("pdf") && ShellCanOpen(".pdf") && ShellOpen(path) > 32; __test;
        if (!isShown) {
            MessageBox(owner, GetResString(TEXT_NO_VIEWER), ".pdf", WIN_BOX_OK, WIN_ICON_INFORMATION); __test;
        }
    __point
    __treat
}

bool TZulDoc::DoCommand(int id)
{
    bool known = false;
    __enter
        known = TEdcDocument::DoCommand(id); __test;
        if (!known) {
            known = Perform(id); __test;
        }
    __point
    __treat
    return known;
}

bool TZulDoc::Perform(int id)
{
    bool known = true;
    __enter
        switch (id) {
        case COMMAND_NO_LOGO:
            EndWithoutLogo();
            break;
        case COMMAND_HOLE_TYPES:
            EditCatalog<TZulHoleTypeCatalog>();
            break;
        case COMMAND_AIR_HEATER_TYPES:
            EditCatalog<TZulAirHeaterTypeCatalog>();
            break;
        case COMMAND_HELP:
            ShowHelp(this, 0);
            break;
        case COMMAND_SHORT_GUIDE:
            ShowHelp(this, CONTEXT_SHORT_GUIDE);
            break;
        case COMMAND_ABOUT:
            ShowHelp(this, CONTEXT_ABOUT);
            break;
        case COMMAND_UPDATE_BUTTON:
            PostToFrame(COMMAND_RECALC);
            break;
        case COMMAND_MANUAL:
            ZulShowPdf(this, BesideProgram(manualName));
            break;
        default:
            known = EditData(id);
        }
        __test;
    __point
    __treat
    return known;
}

/// The dialogs over the hall's data. What one of them changes makes all lists and texts stale.
bool TZulDoc::EditData(int id)
{
    bool known = true;
    bool isChanged = false;
    __enter
        EmROOMDATA *data = room ? room->Data() : NULL;
        switch (id) {
        case COMMAND_ARTICLE:
            isChanged = room && ZulEditArticle(room->Article());
            break;
        case COMMAND_PERIOD:
            isChanged = room && ZulEditPeriod(*data);
            break;
        case COMMAND_INSULATION:
            isChanged = room && ZulEditInsulation(*data);
            break;
        case COMMAND_ENERGY:
            isChanged = room && ZulEditEnergy(*data);
            break;
        case COMMAND_HYGIENE:
            isChanged = room && ZulEditHygiene(*data);
            break;
        case COMMAND_CONCLUSION:
            isChanged = room && ZulEditConclusion(room->Conclusion());
            break;
        default:
            known = false;
        }
        __test;
        if (isChanged) {
            Obsolete(EDC_UPDATE);
            SetModified(); __test;
        }
    __point
    __treat
    return known;
}

void TZulDoc::EnableCommand(TCommandEnabler &ce)
{
    TEdcDocument::EnableCommand(ce);
    if (ce.IsAnswered())
        return;
    switch (ce.id) {
    case COMMAND_ARTICLE:
    case COMMAND_PERIOD:
    case COMMAND_INSULATION:
    case COMMAND_ENERGY:
    case COMMAND_HYGIENE:
    case COMMAND_CONCLUSION:
        ce.Enable(room != NULL);
        break;
    case COMMAND_HOLE_TYPES:
    case COMMAND_AIR_HEATER_TYPES:
    case COMMAND_HELP:
    case COMMAND_SHORT_GUIDE:
    case COMMAND_ABOUT:
        ce.Enable(true);
        break;
    case COMMAND_UPDATE_BUTTON:
        ce.Enable(path != NULL);
        break;
    case COMMAND_MANUAL:
        ce.Enable(DiskHas(BesideProgram(manualName)));
        break;
    default:
        break;
    }
}

bool TZulDoc::PostNoLogo()
{
    return PostToFrame(COMMAND_NO_LOGO);
}

void TZulDoc::EndWithoutLogo()
{
    if (logoFailure == XNULL)
        return;
    ReportFailure(logoFailure);
    TApplication::Current()->Quit(1);
}
