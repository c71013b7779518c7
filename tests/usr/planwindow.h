// A plan in a window for tests: it is opened, and its document is the client of the main window.
#ifndef TESTS_USR_PLANWINDOW_H
#define TESTS_USR_PLANWINDOW_H

#include "lib/xfail.h"
#include "support/plandoc.h"
#include "support/programtables.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/testdialog.h"

#include <gtest/gtest.h>

#include <functional>

class PlanWindow : public testing::Test
{
protected:
    PlanWindow() : frame("Planprobe", doc)
    {
        TestApplication().SetMainWindow(&frame);
        SetAppDocument(&doc);
        frame.Create();
        testdoor::ResizeClient(doc, {900, 700});
        doc.Start();
        testdoor::Settle();
        EdcForgetPlaces();
    }
    ~PlanWindow() override
    {
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_STREQ(xCode, XNULL);
        doc.modified = false;
        TestApplication().SetMainWindow(NULL);
    }
    /// The next modal dialog is filled in and answered.
    static void Fill(std::function<void(testdoor::DialogBox &)> work, int answer = WIN_ID_OK)
    {
        testdoor::Script([=](testdoor::ModalBox &box) {
            EXPECT_EQ(box.Kind(), "dialog");
            testdoor::DialogBox dialog(box);
            work(dialog);
            box.Answer(answer);
        });
    }

    ProgramTables tables;
    TPlanDoc doc;
    TDecoratedFrame frame;
};

#endif
