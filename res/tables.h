// Menus, keys, pictures and dialogs, compiled from menus.txt, art/ and dialogs.txt.
#ifndef RES_TABLES_H
#define RES_TABLES_H

#include "lib/restable.h"

extern const ResMENU resMenus[];
extern const int resMenuCount;
extern const ResACCEL resAccels[];
extern const int resAccelCount;
extern const ResPICTURE resPictures[];
extern const int resPictureCount;
extern const ResDIALOG resDialogs[];
extern const int resDialogCount;

#endif
