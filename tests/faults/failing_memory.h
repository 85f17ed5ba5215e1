// One allocation of the process that fails on demand, whether it comes from operator new or from malloc.
#pragma once

namespace rubrica::test {

// From here to the end of its life, the allocation that comes after `passed` others fails, once.
class FailingAllocation {
 public:
  explicit FailingAllocation(long passed);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  bool happened() const;
};

}  // namespace rubrica::test
