// In place of the C library's list of what it lacks: there is no C library. So its headers for
// 32-bit programs are not needed.
