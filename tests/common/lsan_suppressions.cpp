// Linked into every test program of a sanitizer build.
//
// Mesa 22.x's software rasteriser (llvmpipe in swrast_dri.so) keeps about
// 512 KiB of every context that has rendered in selection mode (GL_SELECT)
// after the context is destroyed; the view tests pick curves that way. The
// allocation is Mesa's own, so LeakSanitizer is told to pass over it.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:swrast_dri.so\n";
}
