// What programs share that lay out and draw pages, but show no window.
#ifndef TOOLS_CONSOLEPAGES_H
#define TOOLS_CONSOLEPAGES_H

/// Before the application is made: the toolkit draws without a screen, whatever the environment says.
void PagesWithoutScreen();
/// Behind it: what would be a message box is a line on standard error.
void PagesSpeakToTerminal();
/// Lays out the pages of a document as its printer will, so that as many are printed as there are. Raises.
void LayOutForPaper(class TEdcDocument &doc);

#endif
