#include "tools/zulcalc_fixture.h"
#include "lib/cde.h"
#include "lib/charstr.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <png.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>

namespace
{
enum { RADIUS = 12, DEPTH = 8 }; // m, of the table

CdeFILENAME NameOf(const std::string &path)
{
    char name[256];
    EXPECT_TRUE(NameFromNative(name, path.c_str(), sizeof name));
    return CdeFILENAME(name);
}
} // namespace

PngPicture ReadPng(const std::string &path)
{
    PngPicture picture;
    FILE *file = fopen(path.c_str(), "rb");
    if (file == NULL)
        return picture;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, NULL, NULL, NULL);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_read_png(png, info, PNG_TRANSFORM_IDENTITY, NULL);
    picture.width = static_cast<int>(png_get_image_width(png, info));
    picture.height = static_cast<int>(png_get_image_height(png, info));
    picture.bitDepth = png_get_bit_depth(png, info);
    picture.colorType = png_get_color_type(png, info);
    png_colorp colors = NULL;
    int count = 0;
    png_get_PLTE(png, info, &colors, &count);
    for (int i = 0; i < count; ++i)
        picture.palette.push_back({colors[i].red, colors[i].green, colors[i].blue});
    png_bytepp rows = png_get_rows(png, info);
    for (int j = 0; j < picture.height; ++j)
        picture.rows.emplace_back(rows[j], rows[j] + picture.width);
    png_destroy_read_struct(&png, &info, NULL);
    fclose(file);
    return picture;
}

std::string FileBytes(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

bool FileExists(const std::string &path)
{
    return std::filesystem::exists(path);
}

ZulcalcFolder::ZulcalcFolder()
    : program(ZULCALC_PROGRAM), room(std::make_unique<EmROOM>(6, 4, 5, "Titel", "Schluss", 20261121))
{
    char pattern[] = "/tmp/zulcalc-XXXXXX";
    folder = mkdtemp(pattern);
    std::filesystem::create_directory(Path("Modely"));
    UseModelFolder();
    MakeModel("Ebene", 10);
    Hang("Ebene", {3, 2, 4}, 2000);
}

ZulcalcFolder::~ZulcalcFolder()
{
    room.reset();
    SetModelFolder("");
    std::filesystem::remove_all(folder);
}

void ZulcalcFolder::UseModelFolder()
{
    SetModelFolder(NameOf(Path("Modely")));
}

void ZulcalcFolder::MakeModel(const char *name, double slope)
{
    EmMODELINFO info;
    StrCopy(info.name, name, sizeof info.name);
    info.power = 1000;
    info.radiantPart = 0.5;
    EmGRID *grid = NULL;
    EmMODEL model(info, &grid);
    grid->Alloc(DEPTH);
    for (int iz = 0; iz <= DEPTH; ++iz) {
        grid->AllocLayer(iz, RADIUS, RADIUS);
        for (int ix = -RADIUS; ix <= RADIUS; ++ix)
            for (int iy = 0; iy <= RADIUS; ++iy)
                grid->Set(ix, iy, iz, 100 + slope * ix);
    }
    ModelSave(&model);
}

EmEMITTER *ZulcalcFolder::Hang(const char *model, const AgPOINT &pos, double power)
{
    EmEMITTER *emitter = new EmEMITTER;
    emitter->Insert(room->Emitters());
    emitter->SetModel(ModelAcquire(model));
    emitter->pos = pos;
    emitter->power = power;
    return emitter;
}

void ZulcalcFolder::SaveHall(const std::string &name)
{
    CdeFILE file;
    file.Open(NameOf(Path(name)), "c");
    room->Write(file);
    file.Close();
}

ProgramEnd ZulcalcFolder::Run(std::vector<std::string> args, const std::string &output)
{
    std::string out = output.empty() ? Path("stdout") : output;
    std::string err = Path("stderr");
    if (passModels)
        args.insert(args.begin(), {"--models", Path("Modely")});
    args.insert(args.begin(), program);
    std::vector<char *> argv;
    for (std::string &arg : args)
        argv.push_back(arg.data());
    argv.push_back(NULL);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    if (output == "closed")
        posix_spawn_file_actions_addclose(&actions, 1);
    else
        posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t pid = 0;
    ProgramEnd end;
    int fault = posix_spawn(&pid, program.c_str(), &actions, NULL, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (fault != 0)
        return end;
    int status = 0;
    waitpid(pid, &status, 0);
    end.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    end.out = output.empty() ? FileBytes(out) : "";
    end.err = FileBytes(err);
    return end;
}

nlohmann::json ZulcalcFolder::Figures(std::vector<std::string> args)
{
    args.insert(args.begin(), {"--json", "-", "halle.sc1"});
    ProgramEnd end = Run(args);
    EXPECT_EQ(end.exitCode, 0) << end.err;
    EXPECT_EQ(end.err, "");
    return nlohmann::json::parse(end.out, NULL, false);
}
