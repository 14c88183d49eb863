#include "state.h"

#include "host.h"

namespace host {

std::unique_ptr<State> state = std::make_unique<State>();

void Reset() {
  state = std::make_unique<State>();
  ResetControls();
}

}  // namespace host
