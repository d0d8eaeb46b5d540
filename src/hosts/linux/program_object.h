// What the program is called on the bus of the login session, and where its one object is.
#pragma once

namespace embrix {

inline constexpr const char* kProgramBusName = "app.embrix.Embrix";
inline constexpr const char* kProgramObject = "/app/embrix/Embrix";

}  // namespace embrix
