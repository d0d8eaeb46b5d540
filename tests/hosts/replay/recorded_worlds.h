// Scripted machines for the tests of recordings, and the way of a machine through a recording.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fakes/folder_world.h"
#include "fakes/interview.h"
#include "fakes/scratch_folder.h"
#include "fakes/scripted_host.h"
#include "hosts/replay/replay_host.h"

namespace embrix {

// A machine with something to say under every question, and texts of any bytes.
void fillLaptop(ScriptedHost& world);
Questions laptopQuestions();

// The bytes of the file that `use` leaves behind when it works on a recorded machine, which has no
// folders unless they are given.
std::string recordingOf(ScriptedHost& world, const std::function<void(Host&)>& use,
                        FolderWorld* folders = nullptr);

// A recording of so many interviews, 2 seconds apart.
std::string recordedInterviews(ScriptedHost& world, const Questions& questions, int ticks,
                               std::vector<TickAnswers>* answers = nullptr);

// Opens the recording and fails the test when it is refused.
Replay replayOf(const std::string& recording);

// Why the recording is refused; empty when it is not.
std::string problemWith(const std::string& recording);

}  // namespace embrix
