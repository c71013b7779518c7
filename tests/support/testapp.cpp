#include "support/testapp.h"

#include "win/application.h"
#include "win/testdoor.h"

#include <cstdlib>

namespace
{
/// The toolkit keeps the arguments as long as it lives, and it lives as long as the process: its own statics
/// are gone before ours.
struct Arguments {
    int count = 1;
    char name[8] = "test";
    char *values[2] = {name, NULL};
};

TApplication *MakeApplication()
{
    static Arguments arguments;
    auto *application = new TApplication("Zulerion", arguments.count, arguments.values);
    testdoor::Enable();
    RemoveServices(); // each test starts with the core library's defaults
    return application;
}
} // namespace

TApplication &TestApplication()
{
    static TApplication *application = MakeApplication();
    return *application;
}

double TestScale()
{
    const char *scale = std::getenv("QT_SCALE_FACTOR");
    return scale ? std::atof(scale) : 1.0;
}

TestServices::TestServices()
{
    TestApplication();
    InstallServices();
}

TestServices::~TestServices()
{
    RemoveServices();
}
