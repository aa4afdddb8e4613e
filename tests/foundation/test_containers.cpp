#include <plotvane/foundation/ExPtrArray.h>
#include <plotvane/foundation/NSet.h>
#include <plotvane/foundation/ValueArrays.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <type_traits>
#include <vector>

namespace
{
// Counts live objects so that tests can tell what an operation deleted.
struct Tracked
{
    static int live;
    int id;
    explicit Tracked(int i = 0) : id(i) { ++live; }
    virtual ~Tracked() { --live; }
};
int Tracked::live = 0;

using TrackedArray = CExPtrArray<Tracked*, Tracked*>;

// The elements of any array, in order.
template <class A> auto Vals(const A& a)
{
    return std::vector<std::decay_t<decltype(a[0])>>(a.begin(), a.end());
}

} // namespace

TEST(CArray, IndexedAccessOutOfRangeRaises)
{
    CArray<int, int> a;
    a.Add(7);
    EXPECT_EQ(a[0], 7);
    EXPECT_THROW(a.GetAt(1), CInvalidArgException);
    EXPECT_THROW(a[-1], CInvalidArgException);
    EXPECT_THROW(a.SetAt(5, 1), CInvalidArgException);
    EXPECT_THROW(a.RemoveAt(0, 2), CInvalidArgException);
    EXPECT_THROW(a.SetSize(-1), CInvalidArgException);
}

TEST(CArray, InsertRemoveAppendCopyKeepOrder)
{
    CArray<int, int> a;
    for (int v : {1, 2, 3})
        a.Add(v);
    a.InsertAt(1, 9, 2); // 1 9 9 2 3
    a.RemoveAt(0);       // 9 9 2 3
    a.InsertAt(6, 5);    // past the end grows
    EXPECT_EQ(Vals(a), (std::vector<int>{9, 9, 2, 3, 0, 0, 5}));

    CArray<int, int> b;
    b.Add(4);
    EXPECT_EQ(b.Append(a), 1);
    EXPECT_EQ(b.GetSize(), 8);
    b.Append(b); // appending itself doubles it
    EXPECT_EQ(b.GetSize(), 16);
    EXPECT_EQ(b[8], 4);

    a.Copy(b);
    EXPECT_EQ(a.GetSize(), 16);
    a.SetSize(2);
    EXPECT_EQ(a.GetSize(), 2);
    EXPECT_EQ(a[1], 9);
}

TEST(ExPtrArray, RemovingDeletesNothingAndOutOfRangeAnswersNull)
{
    Tracked a(1), b(2), c(3);
    {
        TrackedArray arr;
        for (Tracked* p : {&a, &b, &c})
            arr.Add(p);
        arr.RemoveAt(0);
        arr.SetSize(1);
        arr.RemoveAll();
        EXPECT_EQ(arr.GetSize(), 0);
        arr.Add(&a);
        EXPECT_EQ(arr.GetAt(-1), nullptr);
        EXPECT_EQ(arr.GetAt(1), nullptr);
        arr.SetAt(3, &a); // ignored
        EXPECT_EQ(arr.GetSize(), 1);
        EXPECT_TRUE(arr.IsValidIndex(0));
        EXPECT_FALSE(arr.IsValidIndex(1));
        EXPECT_THROW(arr[1], CInvalidArgException); // the plain form still raises
    }                                               // the destructor deletes nothing either
    EXPECT_EQ(Tracked::live, 3);
}

TEST(ExPtrArray, DeletingOperationsDeleteExactlyWhatTheySay)
{
    TrackedArray arr;
    for (int i = 0; i < 5; ++i)
        arr.Add(new Tracked(i));
    arr.Add(nullptr);
    EXPECT_EQ(Tracked::live, 5);

    Tracked* second = arr.GetAt(1);
    EXPECT_TRUE(arr.Delete(second));
    EXPECT_EQ(Tracked::live, 4);
    EXPECT_FALSE(arr.Delete(second)); // no longer present
    EXPECT_TRUE(arr.Delete(nullptr)); // a null slot is just removed
    EXPECT_EQ(arr.GetSize(), 4);

    arr.DeleteAt(0, 2); // ids 0 and 2
    EXPECT_EQ(Tracked::live, 2);
    EXPECT_EQ(arr.GetAt(0)->id, 3);

    Tracked* last = arr.RemoveLastElement(); // removed, not deleted
    EXPECT_EQ(Tracked::live, 2);
    EXPECT_EQ(last->id, 4);
    delete last;

    EXPECT_TRUE(arr.DeleteLastElement());
    EXPECT_FALSE(arr.DeleteLastElement());
    EXPECT_EQ(Tracked::live, 0);
    EXPECT_EQ(arr.RemoveLastElement(), nullptr);
    EXPECT_EQ(arr.GetLastElement(), nullptr);

    // DeleteAll skips null slots and empties the array.
    arr.Add(new Tracked);
    arr.Add(nullptr);
    arr.Add(new Tracked);
    arr.DeleteAll();
    EXPECT_EQ(arr.GetSize(), 0);
    EXPECT_EQ(Tracked::live, 0);
}

TEST(ExPtrArray, IdentityOperationsAndMoving)
{
    Tracked a(1), b(2), c(3);
    TrackedArray arr;
    EXPECT_EQ(arr.Add_if_only_do_not_exists(&a), 0);
    EXPECT_EQ(arr.Add_if_only_do_not_exists(&a), -1);
    for (Tracked* p : {&b, &a, (Tracked*)nullptr, &c})
        arr.Add(p);
    EXPECT_EQ(arr.FindIndex(&c), 4);
    EXPECT_EQ(arr.FindIndex(nullptr), 3);

    arr.RemoveNullElement();
    arr.RemoveDuplicatedElements(); // keeps the first a
    EXPECT_EQ(Vals(arr), (std::vector<Tracked*>{&a, &b, &c}));

    EXPECT_TRUE(arr.Remove(&b));
    EXPECT_FALSE(arr.Remove(&b));

    TrackedArray other;
    other.Add(&a);
    other.Add(&c);
    EXPECT_TRUE(arr.IsElementEqual(other));
    other.Reverse();
    EXPECT_FALSE(arr.IsElementEqual(other));
    arr.Subtract(other);
    EXPECT_EQ(arr.GetSize(), 0);

    // MoveElementTo appends the moved run in reverse.
    for (Tracked* p : {&a, &b, &c})
        arr.Add(p);
    EXPECT_FALSE(arr.MoveElementTo(other, 2, 1));
    EXPECT_TRUE(arr.MoveElementTo(other, 1, 2));
    EXPECT_EQ(Vals(other), (std::vector<Tracked*>{&c, &a, &c, &b}));
    EXPECT_EQ(Vals(arr), (std::vector<Tracked*>{&a}));
}

TEST(CNSet, KeepsInsertionOrderAndRefusesDuplicates)
{
    CNSet s;
    EXPECT_EQ(s.GetMaxVal(), INT_MIN);
    EXPECT_EQ(s.GetMinVal(), INT_MAX);
    EXPECT_EQ(s.Add(5), 1);
    EXPECT_EQ(s.Add(-2), 1);
    EXPECT_EQ(s.Add(5), 0);
    EXPECT_EQ(Vals(s), (std::vector<int>{5, -2}));
    EXPECT_EQ(s.GetMaxVal(), 5);
    EXPECT_EQ(s.GetMinVal(), -2);

    CNSet t;
    t.Add(-2);
    t.Add(5);
    EXPECT_FALSE(s == t); // same values, other order
    t.Sorting();
    s.Sorting();
    EXPECT_TRUE(s == t);
}

TEST(CNSet, IntersectionAddsToOutWithoutClearingIt)
{
    CNSet a, b, out;
    for (int v : {1, 2, 3})
        a.Add(v);
    for (int v : {3, 9, 1})
        b.Add(v);
    out.Add(42);
    CNSet::Intersection(a, b, out);
    EXPECT_EQ(Vals(out), (std::vector<int>{42, 3, 1})); // in the order of the argument set
    EXPECT_TRUE(a.IsIntersectionExist(b));
    CNSet c;
    c.Add(7);
    EXPECT_FALSE(a.IsIntersectionExist(c));

    CNSet copy;
    copy.Add(99);
    copy = a; // clears first
    EXPECT_TRUE(copy == a);
}

TEST(ValueArrays, EqualityIsExactAndNaNNeverEqual)
{
    CArrayD a, b;
    a.Add(1.0);
    b.Add(1.0);
    EXPECT_TRUE(a == b);
    b[0] = std::nextafter(1.0, 2.0);
    EXPECT_FALSE(a == b);
    a[0] = NAN;
    EXPECT_FALSE(a == a);

    CArrayN n;
    EXPECT_TRUE(n.AddNotDuplication(3));
    EXPECT_FALSE(n.AddNotDuplication(3));
    EXPECT_EQ(n.GetSize(), 1);
}

TEST(ValueArrays, OwningArraysCopyDeeply)
{
    CArrayRectD rects;
    rects.Add(new CRectD(0, 0, 1, 1));
    CArrayRectD copy(rects);
    ASSERT_EQ(copy.GetSize(), 1);
    EXPECT_NE(copy.GetAt(0), rects.GetAt(0));
    EXPECT_TRUE(copy == rects);
    copy.GetAt(0)->top = 2;
    EXPECT_TRUE(copy != rects);
}
