#include "support/testdialog.h"

#include "win/resources.h"
#include "win/utf8.h"

#include <algorithm>

namespace
{
enum { LINE_WIDTH = 80, LINE_HEIGHT = 12, LINE_GAP = 2 }; // dialog units

/// Lines without a place stand below each other.
void StackLines(std::vector<ResCONTROL> &lines)
{
    int y = LINE_GAP;
    for (ResCONTROL &line : lines) {
        if (line.x != 0 || line.y != 0 || line.width != 0 || line.height != 0)
            continue;
        line.x = LINE_GAP;
        line.y = y;
        line.width = LINE_WIDTH;
        line.height = LINE_HEIGHT;
        y += LINE_HEIGHT + LINE_GAP;
    }
}

/// The least extent that holds all lines.
void FitAround(ResDIALOG &dialog, const std::vector<ResCONTROL> &lines)
{
    for (const ResCONTROL &line : lines) {
        dialog.width = std::max(dialog.width, line.x + line.width + LINE_GAP);
        dialog.height = std::max(dialog.height, line.y + line.height + LINE_GAP);
    }
}
} // namespace

DialogTables::DialogTables() : tables(), former(SetResourceTables(NULL))
{
    if (former)
        tables = *former;
    Install();
}

DialogTables::~DialogTables()
{
    SetResourceTables(former);
}

void DialogTables::Add(int id, const char *caption, std::vector<ResCONTROL> lines)
{
    DIALOG &added = own.emplace_back();
    added.lines = std::move(lines);
    added.dialog = {id, added.texts.emplace_back(FromUtf8(caption)).c_str(), 0, 0, NULL, 0};
    for (ResCONTROL &line : added.lines)
        line.text = added.texts.emplace_back(FromUtf8(line.text ? line.text : "")).c_str();
    StackLines(added.lines);
    FitAround(added.dialog, added.lines);
    added.dialog.controls = added.lines.data();
    added.dialog.count = static_cast<int>(added.lines.size());
    Install();
}

/// A later dialog takes the place of an earlier one of its number.
void DialogTables::Install()
{
    all.clear();
    for (auto dialog = own.rbegin(); dialog != own.rend(); ++dialog)
        all.push_back(dialog->dialog);
    if (former)
        all.insert(all.end(), former->dialogs, former->dialogs + former->dialogCount);
    std::stable_sort(all.begin(), all.end(),
                     [](const ResDIALOG &a, const ResDIALOG &b) { return a.id < b.id; });
    auto same = [](const ResDIALOG &a, const ResDIALOG &b) { return a.id == b.id; };
    all.erase(std::unique(all.begin(), all.end(), same), all.end());
    tables.dialogs = all.data();
    tables.dialogCount = static_cast<int>(all.size());
    SetResourceTables(&tables);
}
