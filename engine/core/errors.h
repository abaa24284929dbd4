#pragma once
// Exceptions of the engine. Each carries the name of the Python exception that the
// binding raises for it, so a failure reads the same from C++ and from a script.
#include <stdexcept>
#include <string>

namespace vorn {

class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A mapping was asked for a key it does not hold.
class KeyError : public Error {
 public:
  using Error::Error;
};

// A sequence index outside [-n, n).
class IndexError : public Error {
 public:
  using Error::Error;
};

// A value of the wrong kind was passed.
class TypeError : public Error {
 public:
  using Error::Error;
};

// A value of the right kind but an unusable content.
class ValueError : public Error {
 public:
  using Error::Error;
};

// A division by zero.
class ZeroDivisionError : public Error {
 public:
  using Error::Error;
};

// An object lacks the field or operation asked for.
class AttributeError : public Error {
 public:
  using Error::Error;
};

// A fixed-text failure of an engine operation.
class RuntimeError : public Error {
 public:
  using Error::Error;
};

// A walk went deeper than the engine allows (a tree too deep to walk safely).
class RecursionError : public Error {
 public:
  using Error::Error;
};

// A file could not be opened or read.
class OSError : public Error {
 public:
  using Error::Error;
};

// A file named by a script does not exist (Python's FileNotFoundError, an OSError).
class FileNotFoundError : public OSError {
 public:
  using OSError::OSError;
};

}  // namespace vorn
