// Pipes and descriptors of a library that lives in somebody else's process.

#ifndef TOOLS_STARTER_PIPE_H_
#define TOOLS_STARTER_PIPE_H_

namespace ebStarter {

// Makes a pipe whose ends no executed program inherits and that are none of the three standard
// descriptors. Throws std::runtime_error when there are no descriptors left.
void MakePipe(int ends[2]);

// Reading from it and writing to it wait no more. Throws like MakePipe().
void NeverWait(int descriptor);

// A pipe with an owner.
class Pipe {
 public:
  Pipe() { MakePipe(ends_); }
  ~Pipe() {
    CloseReader();
    CloseWriter();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reader() const { return ends_[0]; }
  int writer() const { return ends_[1]; }
  void CloseReader() { CloseEnd(0); }
  void CloseWriter() { CloseEnd(1); }

 private:
  void CloseEnd(int i);
  int ends_[2];
};

// A number above every descriptor that this process has open.
int DescriptorsEnd();

// Closes all descriptors from `first` to before `end`, but for two. May be called between fork and
// exec.
void CloseDescriptors(int first, int end, int but, int and_but = -1);

}  // namespace ebStarter

#endif  // TOOLS_STARTER_PIPE_H_
