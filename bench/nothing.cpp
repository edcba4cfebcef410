// What every shared object costs a process that starts: this one has nothing in it.
