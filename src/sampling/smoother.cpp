#include "sampling/smoother.h"

namespace embrix {

void SmoothingStep::remember(double dt) {
  lastDT_ = dt;
  step_ = dt > 0 ? -std::expm1(-dt / timeConstant_) : 0;
}

}  // namespace embrix
