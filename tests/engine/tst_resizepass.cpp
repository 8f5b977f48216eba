// The resize pass over a whole form: capture, events, reference size, late
// controls, pictures, image lists, tab controls, menus and borders.
#include "EngineRig.h"
#include "layout/HostAccess.h"

#include <QtTest>

using velmora::HostObjectPtr;
using velmora::Value;

namespace {

// An image list's ListImages: Clear, Add and Item(i) with Picture, Key, Tag.
class ListImages : public fake::Object {
public:
    ListImages() : fake::Object("ListImages") { props["Count"] = Value(0); }
    bool refuseClear = false;

    velmora::GetResult call(std::string_view m, const std::vector<Value> &args) override
    {
        log.push_back("call " + std::string(m));
        if (m == "Clear") {
            if (refuseClear)
                return velmora::hostError(velmora::HostErrc::Failed, "bound controls");
            indexed["Item"].clear();
            props["Count"] = Value(0);
            return Value();
        }
        if (m == "Add") {
            const int n = static_cast<int>(indexed["Item"].size()) + 1;
            auto item = std::make_shared<fake::Object>("ListImage");
            item->props = {{"Picture", args.at(2)}, {"Key", args.at(1)}, {"Tag", Value("")}};
            indexed["Item"][n] = Value(HostObjectPtr(item));
            props["Count"] = Value(n);
            return Value(HostObjectPtr(item));
        }
        return fake::Object::call(m, args);
    }

    void addImage(const HostObjectPtr &pic, const std::string &key, const std::string &tag)
    {
        call("Add", {Value(), Value(key), Value(pic)});
        auto item = std::dynamic_pointer_cast<fake::Object>(indexed["Item"].rbegin()->second.toObject());
        item->props["Tag"] = Value(tag);
    }
};

fake::ObjectPtr imageList(const std::string &name, const std::shared_ptr<ListImages> &images)
{
    auto list = std::make_shared<fake::Object>("ImageList");
    list->props = {{"Name", Value(name)}, {"ListImages", Value(HostObjectPtr(images))},
                   {"ImageWidth", Value(240.f)}, {"ImageHeight", Value(240.f)}};
    return list;
}

std::shared_ptr<fake::Object> pictureOf(fake::Object &c, const char *name = "Picture")
{
    return std::dynamic_pointer_cast<fake::Object>(c.get(name)->toObject());
}

} // namespace

class tst_ResizePass : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void setUpCapturesThenPlaces();
    void samePassTwiceChangesNothing();
    void zeroSizedFormKeepsReference();
    void lateControlIsCapturedOnTheFly();
    void picturesScaleFromCapturedOriginal();
    void lockedSizeLeavesPictureAlone();
    void borders_data();
    void borders();
    void tabControlShareOfWidth();
    void imageListRebuiltAtNewSize();
    void imageListFailureIsReported();
    void listViewDetachedFromBothLists();
    void graphicsOffStoresGeometryInPlacement();
    void formPicture_data();
    void formPicture();
    void menusAreRefreshedNotPlaced();
};

void tst_ResizePass::setUpCapturesThenPlaces()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Text1", 1500, 3000, 4500, 6000, rig.form));
    rig.engine.ResizeControls(*rig.form);
    QVERIFY(rig.engine.Initialised);
    QCOMPARE(rig.engine.store().infoCount(), std::size_t(2)); // the form and its control
    QVERIFY(rig.engine.store().info("Form1"));
    QCOMPARE(c->countOf("set "), 0);
    QCOMPARE(rig.done, 0); // no events before the form is ready
}

void tst_ResizePass::samePassTwiceChangesNothing()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Text1", 1500, 3000, 4500, 6000, rig.form));
    rig.setUp();
    rig.resizeTo(20000, 15000);
    const auto writes = c->log.size();
    const int started = rig.started, done = rig.done;
    rig.resizeTo(20000, 15000);

    QCOMPARE(c->log.size(), writes);
    QCOMPARE(rig.started, started + 1);
    QCOMPARE(rig.done, done + 1);
}

void tst_ResizePass::zeroSizedFormKeepsReference()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Text1", 1000, 1000, 2000, 2000, rig.form));
    rig.setUp();
    rig.resizeTo(0, 0); // minimised
    QCOMPARE(rig.engine.RefScaleWidth, 10000.f);
    QCOMPARE(rig.engine.RefScaleHeight, 10000.f);
    rig.resizeTo(20000, 20000);
    QCOMPARE(c->num("Left"), 2000.f);
    QCOMPARE(c->num("Width"), 4000.f);
}

void tst_ResizePass::lateControlIsCapturedOnTheFly()
{
    EngineRig rig;
    rig.add(fake::control("Text1", 1000, 1000, 2000, 2000, rig.form));
    rig.setUp();
    rig.resizeTo(20000, 20000);
    // Added at 2x: its present place is its design place at that size.
    auto late = rig.add(fake::control("Late", 1000, 1000, 2000, 2000, rig.form));
    rig.resizeTo(40000, 40000);
    QCOMPARE(late->num("Left"), 2000.f);
    QCOMPARE(late->num("Width"), 4000.f);
}

void tst_ResizePass::picturesScaleFromCapturedOriginal()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Image1", 0, 0, 3000, 3000, rig.form));
    c->props["Picture"] = Value(HostObjectPtr(fake::picture(480, 240)));
    rig.setUp();
    for (int i = 0; i < 20; ++i) {
        rig.resizeTo(20000, 15000);
        rig.resizeTo(5000, 7500);
    }
    rig.resizeTo(20000, 15000);

    auto pic = pictureOf(*c);
    QCOMPARE(pic->num("Width"), 960.f);
    QCOMPARE(pic->num("Height"), 360.f);
    QCOMPARE(pic->num("Generation"), 1.f); // one scaling away from the original
}

void tst_ResizePass::lockedSizeLeavesPictureAlone()
{
    EngineRig rig;
    auto c = rig.add(fake::control("Image1", 0, 0, 3000, 3000, rig.form));
    c->props["Picture"] = Value(HostObjectPtr(fake::picture(480, 240)));
    rig.setUp();
    auto &flags = *rig.engine.store().flags("Image1");
    flags.DontScaleWidth = flags.DontScaleHeight = true;
    rig.resizeTo(20000, 15000);
    QCOMPARE(c->countOf("set Picture"), 0);
}

void tst_ResizePass::borders_data()
{
    QTest::addColumn<bool>("scaleBorders");
    QTest::addColumn<bool>("dontScaleBorder");
    QTest::addColumn<float>("border");
    QTest::newRow("scaled by the font factor") << true << false << 3.f;
    QTest::newRow("control exempted") << true << true << 2.f;
    QTest::newRow("border scaling off") << false << false << 2.f;
}

void tst_ResizePass::borders()
{
    QFETCH(bool, scaleBorders);
    QFETCH(bool, dontScaleBorder);
    QFETCH(float, border);

    EngineRig rig;
    auto shape = rig.add(fake::control("Shape1", 1000, 1000, 2000, 2000, rig.form));
    shape->props["BorderWidth"] = Value(2.f);
    rig.setUp();
    rig.engine.ScaleBorders = scaleBorders;
    rig.engine.store().flags("Shape1")->DontScaleBorder = dontScaleBorder;
    rig.resizeTo(20000, 15000);
    QCOMPARE(shape->num("BorderWidth"), border);
}

void tst_ResizePass::tabControlShareOfWidth()
{
    EngineRig rig;
    auto tabs = rig.add(fake::control("SSTab1", 0, 0, 2000, 1000, rig.form));
    tabs->type = "SSTab";
    tabs->props["TabsPerRow"] = Value(3);
    tabs->props["TabMaxWidth"] = Value(0);
    tabs->props["TabHeight"] = Value(300.f);
    tabs->props["TabOrientation"] = Value(0);
    rig.setUp();
    rig.resizeTo(20000, 15000);

    QCOMPARE(tabs->num("Width"), 4000.f);
    QCOMPARE(tabs->num("TabMaxWidth"), 1333.f);
    QCOMPARE(tabs->num("TabHeight"), 450.f);
}

void tst_ResizePass::imageListRebuiltAtNewSize()
{
    EngineRig rig;
    auto images = std::make_shared<ListImages>();
    images->addImage(fake::picture(240, 240), "open", "t1");
    images->addImage(fake::picture(240, 240), "save", "t2");
    auto list = rig.add(imageList("ImageList1", images));
    rig.setUp();
    rig.resizeTo(20000, 15000);

    QCOMPARE(list->num("ImageWidth"), 480.f);
    QCOMPARE(list->num("ImageHeight"), 360.f);
    QCOMPARE(images->num("Count"), 2.f);
    auto second = std::dynamic_pointer_cast<fake::Object>(images->indexed["Item"][2].toObject());
    QCOMPARE(*second->get("Key")->toText(), std::string("save"));
    QCOMPARE(*second->get("Tag")->toText(), std::string("t2"));
}

void tst_ResizePass::imageListFailureIsReported()
{
    EngineRig rig;
    auto images = std::make_shared<ListImages>();
    images->refuseClear = true;
    rig.add(imageList("ImageList1", images));
    auto after = rig.add(fake::control("After", 1000, 1000, 2000, 2000, rig.form));
    rig.setUp();
    const int done = rig.done;
    rig.resizeTo(20000, 15000);

    QCOMPARE(rig.errors.size(), std::size_t(1));
    QCOMPARE(rig.errors[0], std::string("ImageList1 has a one or more controls bound to it that is not supported by "
                                        "QxVelmora\r\n See QxVelmora Help File for more information\r\n"));
    QCOMPARE(rig.done, done + 1);
    QCOMPARE(after->num("Left"), 1000.f); // the pass ended there
}

void tst_ResizePass::listViewDetachedFromBothLists()
{
    EngineRig rig;
    auto big = rig.add(imageList("Big", std::make_shared<ListImages>()));
    auto small = rig.add(imageList("Small", std::make_shared<ListImages>()));
    auto view = rig.add(fake::control("ListView1", 0, 0, 3000, 3000, rig.form));
    view->props["Icons"] = Value(HostObjectPtr(big));
    view->props["SmallIcons"] = Value(HostObjectPtr(small));
    rig.setUp();
    rig.engine.store().flags("Big")->DontScaleGraphic = true; // the other still asks for it
    rig.resizeTo(20000, 15000);

    QCOMPARE(view->countOf("set Icons"), 2); // off, then back on
    QCOMPARE(view->countOf("set SmallIcons"), 2);
    QCOMPARE(view->get("Icons")->toObject(), HostObjectPtr(big));
    QCOMPARE(view->get("SmallIcons")->toObject(), HostObjectPtr(small));
}

void tst_ResizePass::graphicsOffStoresGeometryInPlacement()
{
    EngineRig rig;
    auto images = std::make_shared<ListImages>();
    auto list = rig.add(imageList("ImageList1", images));
    auto c = rig.add(fake::control("Text1", 1000, 1000, 2000, 2000, rig.form));
    rig.setUp();
    rig.engine.ScaleGraphics = false;
    rig.resizeTo(20000, 15000);

    QCOMPARE(list->countOf("set ImageWidth"), 0);
    QCOMPARE(images->countOf("call Clear"), 0);
    QCOMPARE(rig.engine.store().info("Text1")->LastWidth, 4000.f);
    QCOMPARE(c->num("Width"), 4000.f);
}

void tst_ResizePass::formPicture_data()
{
    QTest::addColumn<bool>("gradient");
    QTest::addColumn<int>("mode");
    QTest::addColumn<float>("width"); // of the form's picture after the pass; 0: never set
    QTest::newRow("as is, scaled with the form") << false << 0 << 1920.f;
    QTest::newRow("fitted to the form") << false << 1 << 20000.f;
    QTest::newRow("gradient: left alone") << true << 0 << 0.f;
}

void tst_ResizePass::formPicture()
{
    QFETCH(bool, gradient);
    QFETCH(int, mode);
    QFETCH(float, width);

    EngineRig rig;
    rig.form->props["Picture"] = Value(HostObjectPtr(fake::picture(960, 480)));
    rig.engine.GradientFill = gradient;
    rig.engine.FormPicture = mode;
    rig.setUp();
    rig.form->log.clear();
    rig.resizeTo(20000, 15000);

    if (width == 0) {
        QCOMPARE(rig.form->countOf("set Picture"), 0);
        return;
    }
    QCOMPARE(pictureOf(*rig.form)->num("Width"), width);
}

void tst_ResizePass::menusAreRefreshedNotPlaced()
{
    EngineRig rig;
    auto menu = rig.add(fake::control("mnuFile", 0, 0, 0, 0, rig.form));
    menu->type = "Menu";
    rig.setUp();
    rig.resizeTo(20000, 15000);
    QCOMPARE(menu->countOf("call Refresh"), 1);
    QCOMPARE(menu->countOf("call Move"), 0);
    QCOMPARE(menu->countOf("set "), 0);
    QVERIFY(!rig.engine.store().info("mnuFile"));
}

QTEST_GUILESS_MAIN(tst_ResizePass)
#include "tst_resizepass.moc"
