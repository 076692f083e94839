// SPDX-License-Identifier: BSD-3-Clause
#include "ui/CameraListModel.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/TextTree.h"
#include "tests/ui/FakeCameras.h"

#include <QAbstractItemModelTester>
#include <QFont>
#include <QIcon>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

QString lastOf(const QSignalSpy& selected) {
    return selected.last().first().toModelIndex().data().toString();
}

class CameraListModelTest : public testing::Test {
protected:
    using FakeList = FakeSystem::FakeList;

    CameraListModelTest() {
        m_model.setHeaderLabels(QStringLiteral("01234567").split(QString(), Qt::SkipEmptyParts));
    }

    void build(FakeList cameras) {
        m_system->setCameras(std::move(cameras));
        m_model.setupModelData();
    }
    /// Cell of a camera of the tree's n-th interface of its first type.
    QModelIndex cell(int interfaceRow, int cameraRow, int column = 0) const {
        const QModelIndex type = m_model.index(0, 0);
        return m_model.index(cameraRow, column, m_model.index(interfaceRow, 0, type));
    }

    CapturedLog m_log;
    std::shared_ptr<FakeSystem> m_system = std::make_shared<FakeSystem>(FakeList{});
    std::shared_ptr<SystemController> m_controller = makeController(m_system);
    CameraListModel m_model{m_controller};
    QAbstractItemModelTester m_tester{&m_model,
                                      QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(CameraListModelTest, groupsCamerasByTypeAndInterface) {
    QSignalSpy listed(&m_model, &CameraListModel::interfaceListChanged);
    QSignalSpy selected(&m_model, &CameraListModel::interfaceSelected);
    QObject::connect(&m_model, &CameraListModel::interfaceSelected,
                     [&] { EXPECT_EQ(listed.size(), 1) << "selected before it is listed"; });
    build({makeFake("bus 7", usb, "U"), makeFake("eth1", gige, "b"), makeFake("eth1", gige, "B"),
           makeFake("eth0", gige, "Z"), makeFake("eth1", gige, "a"),
           makeFake("zz link", OrvTransportLayerTypeCoaXPress, "X"),
           makeFake("mix", OrvTransportLayerTypeMixed, "M")});

    EXPECT_EQ(textTree(m_model), "GigE\n"
                                 "  eth0 | 125\n"
                                 "    Z-S (1)\n"
                                 "  eth1 | 125\n"
                                 "    B-S (1)\n"
                                 "    a-S (1)\n"
                                 "    b-S (1)\n"
                                 "USB\n"
                                 "  bus 7 | 625\n"
                                 "    U-S (1)\n"
                                 "Mixed\n"
                                 "  mix | 0\n"
                                 "    M-S (1)\n"
                                 "Unknown TL\n"
                                 "  zz link | 0\n"
                                 "    X-S (1)\n");
    // The controller's list is ordered by name, the tree's by type.
    std::string interfaces;
    for (const auto& [id, index] : listed.value(0).value(0).value<InterfaceList>())
        interfaces += id.toStdString() + ' ' + std::to_string(index) + ';';
    EXPECT_EQ(interfaces, "eth0 1;eth1 2;bus 7 0;mix 3;zz link 4;");
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(lastOf(selected), QStringLiteral("eth0"));
}

TEST_F(CameraListModelTest, selectsInterfacesInTheOrderOfTheTree) {
    build({makeFake("a usb", usb, "U"), makeFake("eth0", gige, "A"), makeFake("eth1", gige, "B"),
           makeFake("eth1", gige, "C")});
    QSignalSpy selected(&m_model, &CameraListModel::interfaceSelected);
    QSignalSpy changed(&m_model, &QAbstractItemModel::dataChanged);
    const auto weight = [](const QModelIndex& row) {
        return row.data(Qt::FontRole).value<QFont>().weight();
    };
    EXPECT_EQ(weight(m_model.index(0, 0)), 50);
    EXPECT_EQ(weight(cell(1, 0).parent()), 50);
    m_model.selectInterface(1);
    EXPECT_EQ(weight(cell(0, 0).parent()), 50);
    EXPECT_EQ(weight(cell(1, 0).parent()), 75);
    EXPECT_EQ(changed.size(), 2) << "a view draws both rows anew";
    EXPECT_EQ(lastOf(selected), QStringLiteral("eth1"));
    EXPECT_EQ(m_model.cameraCount(), 2);
    m_model.selectInterface(2);
    EXPECT_EQ(lastOf(selected), QStringLiteral("a usb"));
    m_model.selectInterface(3);
    EXPECT_EQ(selected.size(), 2);
}

TEST_F(CameraListModelTest, showsStatisticsOfTheSelectedInterfaceOnly) {
    const FakeList cameras{makeFake("eth0", gige, "A"), makeFake("eth1", gige, "B")};
    build(cameras);
    FrameStatistics statistics;
    statistics.receivedFrames = 10;
    statistics.lastFrameId = 13;
    statistics.lostFrames = 3;
    statistics.incompleteFrames = 2;
    statistics.payloadBytes = 123'456'789;
    statistics.framesPerSecond = 12.5;
    cameras[0]->statistics = cameras[1]->statistics = statistics;
    QSignalSpy changed(&m_model, &QAbstractItemModel::dataChanged);
    m_model.updateItemData();
    EXPECT_EQ(textTree(m_model), "GigE\n"
                                 "  eth0 | 125\n"
                                 "    A-S (1) | 0 | 12.50 | 123.46 | 10 | 13 | 3 | 2\n"
                                 "  eth1 | 125\n"
                                 "    B-S (1)\n");
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex(), cell(0, 0));
    EXPECT_EQ(changed[0][1].toModelIndex(), cell(0, 0, 7));
    cameras[0]->statistics.lostFrames = -1;
    m_model.updateItemData();
    EXPECT_EQ(cell(0, 0, 6).data(), 0);
}

TEST_F(CameraListModelTest, showsWhichCamerasAreOpenAndTheirWarnings) {
    const auto closed = makeFake("eth0", gige, "B");
    closed->opened = false;
    closed->warning = "Camera cannot be opened";
    const auto open = makeFake("eth0", gige, "A");
    build({open, closed});
    const auto expectWarning = [this](int warned) {
        for (const int row : {0, 1}) {
            EXPECT_EQ(cell(0, row).data(Qt::DecorationRole).canConvert<QIcon>(), row == warned);
            EXPECT_EQ(cell(0, row).data(Qt::ToolTipRole).toString().toStdString(),
                      row == warned ? "Camera cannot be opened" : "");
        }
    };
    expectWarning(1);
    EXPECT_EQ(cell(0, 0).data(Qt::CheckStateRole), Qt::Checked);
    EXPECT_EQ(cell(0, 1).data(Qt::CheckStateRole), Qt::Unchecked);
    EXPECT_FALSE(cell(0, 1, 1).data(Qt::ToolTipRole).isValid());
    EXPECT_EQ(m_model.flags(cell(0, 1)), Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);

    // A benchmark may change the warnings.
    std::swap(open->warning, closed->warning);
    m_model.updateItemData();
    expectWarning(0);
}

TEST_F(CameraListModelTest, enablesCellsByCheckBoxAndWidgets) {
    build({makeFake("eth0", gige, "A")});
    for (const bool checked : {false, true}) {
        for (const bool enabled : {false, true}) {
            m_model.setData(cell(0, 0), checked ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
            m_model.enableWidgets(enabled);
            for (int column = 0; column < 8; ++column) {
                Qt::ItemFlags expected = Qt::ItemIsSelectable;
                expected.setFlag(Qt::ItemIsUserCheckable, column == 0);
                expected.setFlag(Qt::ItemIsEnabled,
                                 (column == 0 || checked) && (column > 1 || enabled));
                EXPECT_EQ(m_model.flags(cell(0, 0, column)), expected)
                    << column << checked << enabled;
            }
        }
    }
    for (const QModelIndex& other : {m_model.index(0, 0), cell(0, 0).parent()})
        EXPECT_EQ(m_model.flags(other), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

TEST_F(CameraListModelTest, checksCamerasAndSetsTheBandwidthOfInterfaces) {
    const auto camera = makeFake("eth0", gige, "A");
    build({camera});
    QSignalSpy changed(&m_model, &QAbstractItemModel::dataChanged);
    for (const bool isChecked : {false, true}) {
        const auto state = isChecked ? Qt::Checked : Qt::Unchecked;
        EXPECT_TRUE(m_model.setData(cell(0, 0), state, Qt::CheckStateRole));
        EXPECT_EQ(camera->opened, isChecked);
        EXPECT_EQ(cell(0, 0).data(Qt::CheckStateRole), state);
        EXPECT_EQ(changed.last().at(2).value<QVector<int>>(), QVector<int>{Qt::CheckStateRole});
    }
    const QModelIndex speed = cell(0, 0).parent().siblingAtColumn(1);
    EXPECT_TRUE(m_model.setData(speed, 90));
    EXPECT_EQ(speed.data(), 90);
    EXPECT_FALSE(m_model.setData(speed, 90, Qt::ToolTipRole));
    for (const QModelIndex& other : {speed.siblingAtColumn(0), cell(0, 0, 1), QModelIndex()})
        EXPECT_FALSE(m_model.setData(other, 90));
    for (const QModelIndex& other : {m_model.index(0, 0), cell(0, 0, 1)})
        EXPECT_FALSE(m_model.setData(other, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_TRUE(camera->opened);
}

} // namespace
