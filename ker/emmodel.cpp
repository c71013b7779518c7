#include "ker/emmodel.h"

#include "lib/charstr.h"
#include "lib/disk.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "lib/xon.h"

namespace
{
/// One walk over the model folder. The names are taken at its start and sorted, so that lists do not depend on
/// the order in which a file system keeps its entries, nor on files that come and go meanwhile.
struct SCAN {
    std::vector<std::string> files; // with extension, as found
    size_t next = 0;
};

LIST *modelList = NULL; // owner; the cache, there while it has a member, so that nothing is left to the end
constinit EmMODELINFO modelInfo; // what ModelInfo and ModelList hand out
SCAN *modelDir = NULL;           // owner; NULL while no walk is open
char modelFolder[X_NAME] = "";   // "" is the folder beside the program
char modelPath[X_NAME] = "";     // what ModelPath hands out

const char SEPARATOR[] = "\\";
const char EXTENSION[] = ".gim";

/// The folder of the models, in the system's form. False if it does not fit.
bool FormFolder(char *folder)
{
    if (modelFolder[0] != EOS)
        return StrCopy(folder, modelFolder, X_NAME);
    CdeFILENAME name = ProgramFolder();
    bool fits = StrLength(name) + StrLength("\\Modely") < X_NAME;
    name.AddName("Modely");
    StrCopy(folder, name, X_NAME);
    return fits;
}

/// The path of a file of the model folder. A path that does not fit is cut, and false says so.
bool FormPath(char *path, const char *file)
{
    bool fits = FormFolder(path);
    int len = StrLength(path);
    bool closed = len == 0 || path[len - 1] == '\\' || path[len - 1] == ':';
    return (closed || StrCat(path, SEPARATOR, X_NAME)) && StrCat(path, file, X_NAME) && fits;
}

/// Whether a file in the model folder can bear the name; parts of a path would lead out of it.
bool IsModelName(const char *name)
{
    return !StrIsBlank(name) && *StrFindAny(name, "\\/:", EOS, 0) == EOS && !StrMatch(name, ".", 0) &&
           !StrMatch(name, "..", 0);
}

bool IsModelFile(const std::string &file)
{
    const size_t ext = sizeof EXTENSION - 1;
    return file.size() > ext && StrMatch(file.c_str() + file.size() - ext, EXTENSION, STR_NOCASE);
}

/// The name under which a file of the folder is known: without extension, cut to what EmMODELINFO::name takes.
std::string NameOfFile(const std::string &file)
{
    const size_t base = file.size() - (sizeof EXTENSION - 1);
    return file.substr(0, std::min(base, sizeof(EmMODELINFO::name) - 1));
}

bool IsPlainFile(const std::string &nativePath)
{
    struct stat st;
    return stat(nativePath.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

/// The model files of the folder, sorted; none if there is no such folder. A name that the character set cannot
/// hold, or that no model can have, is passed over. Throws std::bad_alloc.
std::vector<std::string> FolderFiles()
{
    std::vector<std::string> files;
    char folder[X_NAME], native[NATIVE_MAX], file[X_NAME];
    if (!FormFolder(folder) || !NameToNative(native, folder, NATIVE_MAX))
        return files;
    std::unique_ptr<DIR, int (*)(DIR *)> dir(opendir(native), closedir);
    if (dir == NULL)
        return files;
    while (const dirent *entry = readdir(dir.get())) {
        if (NameFromNative(file, entry->d_name, X_NAME) && IsModelFile(file) &&
            IsModelName(NameOfFile(file).c_str()) && IsPlainFile(std::string(native) + "/" + entry->d_name))
            files.push_back(file);
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The file that the folder lists under the name although it is not called so: its extension has capitals, or
/// its base name is longer than a model's. Empty if there is none. Throws std::bad_alloc.
std::string OtherFile(const char *name)
{
    std::string key = std::string(name).substr(0, sizeof(EmMODELINFO::name) - 1);
    for (const std::string &file : FolderFiles()) {
        if (NameOfFile(file) == key && file != std::string(name) + EXTENSION)
            return file;
    }
    return "";
}

/// Opens the file of a model. XFOPEN if there is none.
void OpenModel(CdeFILE &file, const char *name)
{
    __enter
        const char *path = ModelPath(name); __test;
        file.Open(path, "o");
        if (xCode == XFOPEN) {
            __repair;
            std::string other = OtherFile(name);
            if (other.empty() || !FormPath(modelPath, other.c_str()))
                __raise(XFOPEN);
            file.Open(modelPath, "o");
        }
        __test;
    __point
    __treat
}

/// The technical data of an open file, in modelInfo; NULL if they cannot be had.
const EmMODELINFO *LoadInfo(CdeFILE &file, const char *name)
{
    const EmMODELINFO *loaded = NULL;
    __enter
        EmMODEL::ReadInfo(file, modelInfo); __test;
        file.Close(); __test;
        StrCopy(modelInfo.name, name, sizeof modelInfo.name);
        loaded = &modelInfo;
    __point
    __treat
    return loaded;
}

/// The technical data of a file as it stands in the folder; NULL if they cannot be had.
const EmMODELINFO *LoadFile(const std::string &file)
{
    const EmMODELINFO *loaded = NULL;
    char path[X_NAME];
    __enter
        if (!FormPath(path, file.c_str())) {
            StrCopy(xFOpenName, path, X_NAME);
            __raise(XFOPEN);
        }
        CdeFILE opened;
        opened.Open(path, "o"); __test;
        loaded = LoadInfo(opened, NameOfFile(file).c_str()); __test;
    __point
    __treat
    return loaded;
}

void CloseScan()
{
    delete modelDir;
    modelDir = NULL;
}

void OpenScan()
{
    __enter
        SCAN *scan = new SCAN{FolderFiles()};
        modelDir = scan;
    __point
    __treat
}

/// The next file of the walk, NULL at its end, which closes it.
const std::string *NextFile()
{
    if (modelDir != NULL && modelDir->next < modelDir->files.size())
        return &modelDir->files[modelDir->next++];
    CloseScan();
    return NULL;
}

/// The data of a model of which no more than its file's name is known.
const EmMODELINFO *NameAlone(const std::string &file)
{
    modelInfo = EmMODELINFO();
    StrCopy(modelInfo.name, NameOfFile(file).c_str(), sizeof modelInfo.name);
    return &modelInfo;
}

const EmMODELINFO *NextName()
{
    const EmMODELINFO *listed = NULL;
    __enter
        const std::string *file = NextFile();
        if (file != NULL)
            listed = NameAlone(*file);
    __point
    __treat
    return listed;
}

/// The next model of the walk. A failure ends here: one damaged file must not hide the others.
const EmMODELINFO *NextModel()
{
    const EmMODELINFO *listed = NULL;
    __enter
        const std::string *file = NextFile();
        if (file != NULL) {
            listed = LoadFile(*file);
            __repair;
            if (listed == NULL)
                listed = NameAlone(*file);
        }
    __point
    __treat
    return listed;
}

EmMODEL *FindCached(const char *name)
{
    LISTITER<EmMODEL> model;
    model.SetList(modelList);
    for (bool more = model.First(); more; more = ++model) {
        if (StrMatch(model->Info()->name, name, 0))
            return model;
    }
    return NULL;
}
} // namespace

void SetModelFolder(const char *folder)
{
    __enter
        ASSERT(folder != NULL);
        if (StrLength(folder) >= X_NAME) {
            StrCopy(xFOpenName, folder, X_NAME);
            __raise(XFOPEN);
        }
        StrCopy(modelFolder, folder, X_NAME);
    __point
    __treat
}

const char *ModelPath(const char *name)
{
    __enter
        bool fits = FormFolder(modelPath);
        if (name != NULL) {
            fits = FormPath(modelPath, name) && StrCat(modelPath, EXTENSION, X_NAME) && IsModelName(name);
        }
        if (!fits) {
            StrCopy(xFOpenName, modelPath, X_NAME);
            __raise(XFOPEN);
        }
    __point
        modelPath[0] = EOS;
    __treat
    return modelPath;
}

const EmMODELINFO *ModelInfo(const char *name)
{
    const EmMODELINFO *loaded = NULL;
    __enter
        ASSERT(name != NULL);
        CdeFILE file;
        OpenModel(file, name); __test;
        loaded = LoadInfo(file, name); __test;
    __point
    __treat
    return loaded;
}

const EmMODELINFO *ModelList(int mode)
{
    if (mode == MODEL_NEXT)
        return NextModel();
    if (mode == MODEL_NAME)
        return NextName();
    CloseScan();
    if (mode == MODEL_OPEN)
        OpenScan();
    return NULL;
}

EmMODEL *ModelAcquire(const char *name)
{
    EmMODEL *found = NULL;
    EmMODEL *fresh = NULL; // ours until it is in the cache
    char key[sizeof(EmMODELINFO::name)];
    __enter
        ASSERT(name != NULL);
        StrCopy(key, name, sizeof key);
        if (!StrIsBlank(name)) {
            found = FindCached(key);
            if (found == NULL) {
                fresh = new EmMODEL(name); __test;
                if (modelList == NULL)
                    modelList = new LIST;
                fresh->Insert(modelList);
                found = fresh;
                fresh = NULL;
            }
            ++found->used;
        }
    __point
        delete fresh;
    __treat
    return found;
}

EmMODEL *ModelAddRef(EmMODEL *model)
{
    if (model != NULL) {
        ASSERT(model->used > 0);
        ++model->used;
    }
    return model;
}

void ModelRelease(EmMODEL *model)
{
    if (model == NULL)
        return;
    ASSERT(model->used > 0);
    if (--model->used > 0)
        return;
    delete model;
    if (modelList->IsEmpty()) {
        delete modelList;
        modelList = NULL;
    }
}

EmMODEL::EmMODEL(const char *name)
{
    __enter
        ASSERT(name != NULL);
        CdeFILE file;
        OpenModel(file, name); __test;
        Read(file); __test;
        file.Close(); __test;
        StrCopy(info.name, name, sizeof info.name);
    __point
    __treat
}

EmMODEL::EmMODEL(const EmMODELINFO &aInfo, EmGRID **aGrid) : info(aInfo)
{
    if (aGrid != NULL)
        *aGrid = &grid;
}

void EmGRID::Alloc(int arz)
{
    __enter
        ASSERT(arz > 0);
        Free();
        data = new LAYER[static_cast<size_t>(arz) + 1];
        rz = arz;
    __point
    __treat
}

void EmGRID::AllocLayer(int iz, int arx, int ary)
{
    bool begun = false;
    __enter
        ASSERT(data != NULL);
        ASSERT(iz >= 0 && iz <= rz);
        ASSERT(arx > 0 && ary > 0);
        FreeLayer(iz);
        LAYER *l = data + iz;
        double **table = new double *[2 * static_cast<size_t>(arx) + 1]();
        l->rx = arx;
        l->ry = ary;
        l->F = table + arx;
        begun = true;
        for (int ix = -arx; ix <= arx; ++ix)
            l->F[ix] = new double[static_cast<size_t>(ary) + 1];
    __point
        if (begun)
            FreeLayer(iz);
    __treat
}

void EmGRID::FreeLayer(int iz)
{
    ASSERT(data != NULL);
    ASSERT(iz >= 0 && iz <= rz);
    LAYER *l = data + iz;
    if (l->F != NULL) {
        for (int ix = -l->rx; ix <= l->rx; ++ix)
            delete[] l->F[ix];
        delete[](l->F - l->rx);
    }
    *l = LAYER();
}

void EmGRID::Free()
{
    if (data != NULL) {
        for (int iz = 0; iz <= rz; ++iz)
            FreeLayer(iz);
        delete[] data;
    }
    data = NULL;
    rz = 0;
}

double *EmGRID::Cell(int ix, int iy, int iz) const
{
    ASSERT(iz >= 0 && iz <= rz);
    ASSERT(data != NULL);
    const LAYER *l = data + iz;
    ASSERT_AS(ix >= -l->rx && ix <= l->rx, "abs(ix) <= l->rx");
    ASSERT(iy >= 0 && iy <= l->ry);
    ASSERT_AS(l->F != NULL && l->F[ix] != NULL, "l->F[ix] != NULL");
    return l->F[ix] + iy;
}

void EmGRID::Set(int ix, int iy, int iz, double v)
{
    *Cell(ix, iy, iz) = v;
}

double EmGRID::Get(int ix, int iy, int iz) const
{
    return *Cell(ix, iy, iz);
}

EmGRID::LAYER *EmGRID::Layer(int iz, int *rx, int *ry)
{
    ASSERT(iz >= 0 && iz <= rz);
    ASSERT(data != NULL);
    ASSERT_AS(data[iz].F != NULL, "data[iz].F != NULL");
    if (rx != NULL)
        *rx = data[iz].rx;
    if (ry != NULL)
        *ry = data[iz].ry;
    return data + iz;
}

namespace
{
/// One layer's value between four of its cells.
inline double Bilinear(const EmGRID::LAYER &l, int ix, int iy, double dx, double dy)
{
    const double *a = l.F[ix] + iy;
    const double *b = l.F[ix + 1] + iy;
    double near = a[0] * (1 - dx) + b[0] * dx;
    double far = a[1] * (1 - dx) + b[1] * dx;
    return near * (1 - dy) + far * dy;
}
} // namespace

double EmGRID::Value(const AgPOINT &p) const
{
    // Compared as doubles before anything is truncated, so that far points and NaN are outside too.
    if (!(p.z >= 0 && p.z < rz))
        return 0;
    int iz = static_cast<int>(p.z);
    const LAYER &upper = data[iz];
    const LAYER &lower = data[iz + 1];
    double ax = std::fabs(p.x);
    double ay = std::fabs(p.y);
    if (!(ay < upper.ry && ax < upper.rx && ay < lower.ry && ax < lower.rx))
        return 0;
    int iy = static_cast<int>(ay);
    int ix = static_cast<int>(p.x);
    if (p.x < ix)
        --ix;
    double dx = p.x - ix;
    double dy = ay - iy;
    double dz = p.z - iz;
    return Bilinear(upper, ix, iy, dx, dy) * (1 - dz) + Bilinear(lower, ix, iy, dx, dy) * dz;
}
