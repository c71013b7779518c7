// Menus, keys and pictures of the resources, as the window system layer looks them up.
#ifndef WIN_RESOURCES_H
#define WIN_RESOURCES_H

#include "lib/restable.h"

/// The tables must outlive the use; NULL takes them off. @return the former ones
const ResTABLES *SetResourceTables(const ResTABLES *tables);

const ResMENU *FindMenu(int id); // NULL where there is none
const char *FindAccelerator(int command);
const ResPICTURE *FindPicture(int id);

#endif
