#include "state.h"

#include "host.h"

namespace host {

std::optional<State> state(std::in_place);

void Reset() {
  state.emplace();
  ResetControls();
}

}  // namespace host
