#ifndef TAVREL_PLATFORM_SLEEP_GUARD_H_
#define TAVREL_PLATFORM_SLEEP_GUARD_H_

namespace tavrel {

// What keeps the machine from going to sleep. A user who sends it there has to say so once more:
// the system cannot tell that wish from a desktop's own after a time without input.
class SleepGuard {
 public:
  virtual ~SleepGuard() = default;

  // True asks the system to stay awake until false is said, or the process ends. Cheap if nothing
  // changes. Where no system listens nothing happens.
  virtual void StayAwake(bool wanted) = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SLEEP_GUARD_H_
