// How a host learns that it must show a control anew. Main queue only.
#pragma once

namespace chatsum::platform {

class ChangeListener {
 public:
  virtual ~ChangeListener() = default;
  /// Something that is shown of the control has changed.
  virtual void changed() = 0;
};

}  // namespace chatsum::platform
