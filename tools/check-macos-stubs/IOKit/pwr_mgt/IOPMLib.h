// The one function of the platform's header of this name that the program calls, for folders of
// headers that come without it. Its form is public documentation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOReturn.h>

extern "C" {

// Hands over a dictionary from process ids (numbers) to arrays of dictionaries, one for each
// assertion that the process holds.
IOReturn IOPMCopyAssertionsByProcess(CFDictionaryRef* AssertionsByPID);
}
