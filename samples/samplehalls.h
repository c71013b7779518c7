// The sample halls of the program folder, built through the kernel so that they always match the file format: a
// workshop, a production hall and a logistics hall, as a designer would leave them behind. Their emitters name
// the sample models, which must be in the model folder.
#ifndef SAMPLES_SAMPLEHALLS_H
#define SAMPLES_SAMPLEHALLS_H

#include "ker/emroom.h"

enum { SAMPLE_HALLS = 3 };

/// The file name of sample hall i, from 0.
const char *SampleHallFile(int i);

/// A new hall; the caller deletes it. XFOPEN where one of its models is missing.
EmROOM *MakeSampleHall(int i);

#endif
