// Loading form files: the row layout, containers across files, and input
// that must fail with the file and line, adding nothing to the form.
#include "FormTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::form::test {
namespace {

std::string formFile(const std::string& controls, const std::string& attributes = "") {
    return "<form xmlns=\"x-schema:KT500FormSchema.xml\"" + attributes + ">" + controls + "</form>";
}

class FormLoaderTest : public ::testing::Test {
protected:
    void SetUp() override { loader.load(form, dataDir() / "row_page.xml"); }

    FormLoader loader{schemaFile()};
    Form form;
};

TEST_F(FormLoaderTest, RowPageGetsLabelsFieldsUnitsAndMarks) {
    std::vector<std::string> order;
    for (const Control* c : form.controls()) {
        order.push_back(c->displayName());
    }
    EXPECT_EQ(order, (std::vector<std::string>{
                         "fraKT520(7)", "lblHAOperationUnit(0)", "txtHAOperationUnit(0)",
                         "imgHAOperationUnit(0)", "lblHAOperationUnitTitle(1)",
                         "comHAOperationUnit(0)", "imgHAOperationUnit(1)", "lblHAOperationUnit(1)",
                         "txtHAOperationUnit(1)", "lblHAOperationUnitUnit(1)",
                         "imgHAOperationUnit(2)", "cmdReload(0)", "lblHANote"}));

    const Control& page = form.control("fraKT520", 7);
    const Control& field = form.control("txtHAOperationUnit", 1);
    const Control& mark = form.control("imgHAOperationUnit", 2);
    EXPECT_EQ(field.container(), &page);
    EXPECT_EQ(mark.tag(), field.tag());  // the mark shares its field's tag
    EXPECT_FALSE(mark.visible());
    EXPECT_EQ(form.control("lblHAOperationUnit", 0).captionKey(), "hartTag");
    // A unit is shown as written, with no key to translate.
    EXPECT_EQ(form.control("lblHAOperationUnitUnit", 1).caption(), "%");
    EXPECT_EQ(form.control("lblHAOperationUnitUnit", 1).captionKey(), "");
    EXPECT_EQ(field.left(), form.control("comHAOperationUnit", 0).left());
    EXPECT_GT(mark.left(), field.left() + field.width());

    // A later file may place controls in a container loaded before.
    loader.loadBytes(form,
                     formFile("<control kind=\"chk\" name=\"chkHAOperationUnit\" index=\"0\" "
                              "container=\"fraKT520(7)\" value=\"1\"/>"),
                     "later.xml");
    EXPECT_TRUE(Form::isInside(form.control("chkHAOperationUnit", 0), page));
}

TEST_F(FormLoaderTest, BadFilesFailWithFileAndLineAndAddNothing) {
    const std::size_t before = form.controls().size();
    const struct {
        const char* file;
        long line;  // 0: not checked
        const char* words;
    } cases[] = {
        {"not_xml.xml", 1, ""},
        {"invalid_schema.xml", 4, "name"},
        {"duplicate_control.xml", 5, "txtHAOperationUnit(0)"},
        {"unknown_container.xml", 3, "fraNowhere(3)"},
        {"unknown_kind.xml", 4, "slider"},
        {"rows_overflow.xml", 4, "high"},
        {"doctype.xml", 0, ""},
        {"no_such_file.xml", 0, ""},
    };
    for (const auto& c : cases) {
        try {
            Form fresh;
            loader.load(fresh, dataDir() / c.file);
            ADD_FAILURE() << c.file << " loaded";
        } catch (const FormLoadError& e) {
            EXPECT_NE(e.file().find(c.file), std::string::npos) << e.what();
            if (c.line > 0) {
                EXPECT_EQ(e.line(), c.line) << e.what();
            }
            EXPECT_NE(std::string(e.what()).find(c.words), std::string::npos) << e.what();
        }
        EXPECT_THROW(loader.load(form, dataDir() / c.file), FormLoadError);
        EXPECT_EQ(form.controls().size(), before) << c.file << " left controls behind";
    }
}

TEST_F(FormLoaderTest, ChildrenMustFitTheirControlAndAFileThatFailsLateAddsNothing) {
    const std::size_t before = form.controls().size();
    const std::string bad[] = {
        // entries belong to list boxes
        formFile(R"(<control kind="txt" name="txtA"><entry text="x"/></control>)"),
        // only frames and menus contain controls
        formFile(R"(<control kind="cmd" name="cmdA"><control kind="lbl" name="lblB"/></control>)"),
        // rows need a frame with its extents
        formFile(R"(<control kind="fra" name="fraA"><rows mark="imgA">)"
                 R"(<row captionKey="k" kind="txt" name="txtA"/></rows></control>)"),
        // the mark carries the family's image prefix
        formFile(
            R"(<control kind="fra" name="fraA" width="8415" height="2000"><rows mark="imgHAx">)"
            R"(<row captionKey="k" kind="txt" name="txtA"/></rows></control>)",
            R"( family="KT540")"),
        // a row's field is a value control
        formFile(R"(<control kind="fra" name="fraA" width="8415" height="2000"><rows mark="imgA">)"
                 R"(<row captionKey="k" kind="tree" name="treeA"/></rows></control>)"),
        // a name is an array or a plain control, not both
        formFile(R"(<control kind="lbl" name="lblA"/><control kind="lbl" name="lblA" index="0"/>)"),
        // the second control is in the form already
        formFile(
            R"(<control kind="lbl" name="lblFresh"/><control kind="cmd" name="cmdReload" index="0"/>)"),
        // a property the kind lacks fails while the controls are being built
        formFile(
            R"(<control kind="lbl" name="lblFresh"/><control kind="tmr" name="tmrFresh" caption="x"/>)"),
        // each size is within the schema's extent, the chart they make is not
        formFile(R"(<control kind="lbl" name="lblFresh"/>)"
                 R"(<control kind="chart" name="pesgoFresh" subsets="11552" points="50109"/>)"),
        // the root is a form in the form namespace
        R"(<other xmlns="x-schema:KT500FormSchema.xml"/>)",
    };
    for (const std::string& bytes : bad) {
        EXPECT_THROW(loader.loadBytes(form, bytes, "inline.xml"), FormLoadError) << bytes;
    }
    EXPECT_EQ(form.controls().size(), before);
}

TEST_F(FormLoaderTest, ModelsAndPropertiesComeFromTheFile) {
    loader.loadBytes(form, formFile(R"x(
      <control kind="tree" name="TreeView3">
        <node key="device" text="Device" expanded="1"/><node key="alarms" parent="device"/>
      </control>
      <control kind="lsv" name="lsvEventLog"><column captionKey="time" width="2000"/></control>
      <control kind="chart" name="pesgoPL500" chartClass="pesgo" subsets="4" points="50"/>
      <control kind="txt" name="txtA" foreColor="0xff0000">
        <property name="MousePointer" value="11"/>
      </control>)x"),
                     "models.xml");
    EXPECT_EQ(form.control("TreeView3").tree().node("alarms").parentKey, "device");
    EXPECT_EQ(form.control("lsvEventLog").listView().columns().at(0).width, 2000);
    EXPECT_TRUE(form.control("pesgoPL500").chart().scientific());
    EXPECT_EQ(form.control("txtA").foreColor(), 0xff0000U);
    EXPECT_EQ(form.control("txtA").mousePointer(), 11);
}

}  // namespace
}  // namespace kt500::form::test
