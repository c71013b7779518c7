// Writes the sample catalogues: mkcatalogs FOLDER, the folder that they go to. Part of the build. They come out
// of the catalogues' own writing, and are read back before the build goes on.
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "samples/catalogtables.h"
#include "tools/console.h"
#include "usr/zulairht.h"
#include "usr/zulhole.h"

#include <cstdio>

#include "lib/xon.h"

namespace
{
void SetName(char *name, const char *utf8)
{
    bool fits = TextFromUtf8(name, utf8, SHORTSTRMAX);
    ASSERT(fits);
}

class ElementCatalog : public TZulHoleTypeCatalog
{
public:
    ElementCatalog() : TZulHoleTypeCatalog(NULL) {}
    void Fill()
    {
        for (const ELEMENTGROUP &row : SampleElements())
            AddGroup(row);
        loaded = true;
    }
    using TEdcCtlgList::Load;

private:
    void AddGroup(const ELEMENTGROUP &row)
    {
        auto *group = new TEdcCtlgGroup;
        group->Insert(this);
        SetName(group->name, row.name);
        for (const ELEMENTROW &element : row.elements) {
            auto *item = new TZulHoleTypeItem;
            char name[SHORTSTRMAX];
            item->Insert(group);
            SetName(name, element.name);
            item->record.name = name;
            item->record.transmission = element.k;
        }
    }
};

class AirHeaterCatalog : public TZulAirHeaterTypeCatalog
{
public:
    AirHeaterCatalog() : TZulAirHeaterTypeCatalog(NULL) {}
    void Fill()
    {
        for (const AIRHEATERROW &row : SampleAirHeaters()) {
            auto *item = new TZulAirHeaterTypeItem;
            char text[SHORTSTRMAX];
            item->Insert(this);
            SetName(text, row.type);
            item->data.typeName = text;
            item->data.output = row.output;
            item->data.tempRise = row.tempRise;
            item->data.airFlow = row.airFlow;
            item->data.length = row.length;
            item->data.width = row.width;
            item->data.height = row.height;
        }
        loaded = true;
    }
    using TEdcCtlgList::Load;
};

/// A former file goes: what is made by every build needs no backup. Saving reports its failures by itself, and
/// leaves no file then.
template <class CATALOG>
bool Make()
{
    bool made = false;
    __enter
        CATALOG catalog, written;
        catalog.Fill();
        DiskDelete(catalog.Path());
        catalog.Save(); __test;
        if (DiskHas(catalog.Path())) {
            written.Load(); __test;
        }
        made = written.IsLoaded() && written.Count() == catalog.Count();
    __point
        made = false;
    __treat
    return made;
}

int Run(const char *path)
{
    int status = 1;
    __enter
        CdeFILENAME folder;
        ConsoleName(folder, path, XFCREATE); __test;
        TEdcCtlgList::SetCatalogDirectory(folder, "zec");
        bool elements = Make<ElementCatalog>(); __test;
        bool airHeaters = Make<AirHeaterCatalog>(); __test;
        status = elements && airHeaters ? 0 : 1;
    __point
        __repair;
        __report;
    __treat
    return status;
}
} // namespace

int main(int argc, char **argv)
{
    ConsoleStart();
    if (argc == 2)
        return Run(argv[1]);
    std::fprintf(stderr, "Aufruf: mkcatalogs ORDNER\n");
    return 2;
}
