// The program. It takes no arguments and starts with an empty window.
#include "usr/edcapp.h"
#include "usr/zuldoc.h"

int main(int argc, char **argv)
{
    TEdcApplication application(argc, argv);
    TEdcApplication::startUp = ZulStartUp;
    int code = application.Run();
    ZulShutDown();
    return code;
}
