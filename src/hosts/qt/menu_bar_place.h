// Whether there is a place for a menu bar item.
#pragma once

namespace embrix {

// On a Mac always. On Linux: whether something shows the items of the status-notifier protocol, or
// on X11 a tray of the older kind that takes windows in. It may come later, and go; each call looks
// again, which takes some milliseconds.
//
// The toolkit would tell as well, but what it has once been told by the bus it believes for as long
// as it runs; so it is to be asked for an item only where there is a place. Main thread only, with
// the toolkit's application standing.
bool hasMenuBarPlace();

}  // namespace embrix
