// A host program built against the installed package: it writes a small
// archive to memory and reads it back through the public headers only.
#include <plotvane/plotvane.h>

#include <cstdio>

int main()
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        CNSet drawn;
        drawn.Add(0);
        drawn.Add(2);
        ar << CString("eye of DQ0");
        drawn.Serialize(ar);
        ar.Close();
    }
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load);
    CString title;
    CNSet drawn;
    ar >> title;
    drawn.Serialize(ar);
    std::printf("example host: read \"%s\" with %d drawn sets, %llu bytes\n", title.GetString(),
                int(drawn.GetSize()), (unsigned long long)file.GetLength());
    return title == "eye of DQ0" && drawn.GetSize() == 2 ? 0 : 1;
}
