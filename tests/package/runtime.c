/*
 * The few functions of a C runtime that the worked examples call. Linked with these, they import
 * nothing but the library and the system, so the module loader runs them.
 */
#include <stdarg.h>
#include <windows.h>

int main(void);

static char line[512];
static DWORD cbLine;

static void Flush(void) {
  DWORD cbWritten;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line, cbLine, &cbWritten, NULL);
  cbLine = 0;
}

typedef struct {
  char *pNext, *pEnd; /* NULL: the line */
} Sink;

static void Put(Sink* sink, char c) {
  if (sink->pNext != NULL) {
    if (sink->pNext < sink->pEnd) *sink->pNext++ = c;
    return;
  }
  line[cbLine++] = c;
  if (c == '\n' || cbLine == sizeof line) Flush();
}

static int ReadNumber(const char** pFormat, va_list* arguments) {
  int number = 0;
  if (**pFormat == '*') return ++*pFormat, va_arg(*arguments, int);
  for (; **pFormat >= '0' && **pFormat <= '9'; ++*pFormat) number = 10 * number + **pFormat - '0';
  return number;
}

static char* WriteDigits(char* pEnd, unsigned value, unsigned base) {
  do *--pEnd = "0123456789abcdef"[value % base];
  while ((value /= base) != 0);
  return pEnd;
}

/* The conversions d, s, u and x with the flags 0 and -, width and precision. */
static void Format(Sink* sink, const char* format, va_list arguments) {
  for (; *format != 0; ++format) {
    char digits[16], *pText = digits + sizeof digits;
    int isLeft = 0, width, precision = 0x7FFF, length = 0, value, isNegative;
    char cPad;
    if (*format != '%' || *++format == '%') {
      Put(sink, *format);
      continue;
    }
    if (*format == '-') isLeft = 1, ++format;
    cPad = *format == '0' ? '0' : ' ';
    width = ReadNumber(&format, &arguments);
    if (*format == '.') ++format, precision = ReadNumber(&format, &arguments);
    while (*format == 'z' || *format == 'l') ++format;
    if (*format == 's') {
      pText = va_arg(arguments, char*);
      while (length < precision && pText[length] != 0) ++length;
    } else {
      value = va_arg(arguments, int);
      isNegative = *format == 'd' && value < 0;
      pText = WriteDigits(pText, isNegative ? 0u - (unsigned)value : (unsigned)value,
                          *format == 'x' ? 16 : 10);
      if (isNegative) *--pText = '-';
      length = (int)(digits + sizeof digits - pText);
    }
    for (width -= length; !isLeft && width > 0; --width) Put(sink, cPad);
    for (; length > 0; --length) Put(sink, *pText++);
    for (; width > 0; --width) Put(sink, ' ');
  }
}

int __mingw_vfprintf(void* file, const char* format, va_list arguments) {
  Sink sink = {NULL, NULL};
  (void)file;
  Format(&sink, format, arguments);
  return 0;
}

int __mingw_vsnprintf(char* pOut, size_t cbOut, const char* format, va_list arguments) {
  Sink sink = {pOut, pOut + cbOut - 1};
  Format(&sink, format, arguments);
  *sink.pNext = 0;
  return (int)(sink.pNext - pOut);
}

int puts(const char* psz) {
  Sink sink = {NULL, NULL};
  while (*psz != 0) Put(&sink, *psz++);
  return Put(&sink, '\n'), 0;
}

size_t strlen(const char* psz) { return (size_t)lstrlenA(psz); }

void* memcpy(void* to, const void* from, size_t count) {
  volatile char* p = to;
  while (count-- > 0) p[count] = ((const char*)from)[count];
  return to;
}

void* memset(void* to, int value, size_t count) {
  volatile char* p = to;
  while (count-- > 0) p[count] = (char)value;
  return to;
}

static void* Open(unsigned number) { return (void*)(UINT_PTR)number; }
void* (*importedOpen)(unsigned)__asm__("__imp____acrt_iob_func") = Open;
void* New(size_t count) __asm__("__Znwj");
void* New(size_t count) { return LocalAlloc(LPTR, count); }
void Delete(void* p, size_t count) __asm__("__ZdlPvj");
void Delete(void* p, size_t count) { (void)count, LocalFree(p); }
void Throw(void) __asm__("__ZSt20__throw_length_errorPKc");
void Throw(void) { ExitProcess(99); }
void ThrowBadAlloc(void) __asm__("__ZSt17__throw_bad_allocv");
void ThrowBadAlloc(void) { ExitProcess(99); }
void __main(void) {}

void start(void) {
  const int result = main();
  Flush();
  ExitProcess((UINT)result);
}
