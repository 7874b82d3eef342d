import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../FuncComp"
import "../Theme"

// The page with the sign-in form.
FocusScope {
    id: loginComp
    objectName: "loginComp"

    property string username: ""
    property string passwd: ""
    property string cimUrl: ""
    // No field sets the second address: it is always sent as an empty string.
    property string pdsUrl: ""
    // True while a sign-in waits for its reply. Events are processed meanwhile; none of them may start
    // another sign-in or replace this page.
    property bool waiting: false

    function showError(error) {
        errorItem.text = error;
        errorItem.visible = true;
    }

    function formError() {
        if (username === "" || passwd === "")
            return qsTr("用户名或密码输入为空！");
        if (cimUrl === "")
            return qsTr("Editor 服务器地址为空！");
        if (!cimUrl.startsWith("http://") && !cimUrl.startsWith("https://"))
            return qsTr("Editor 地址错误！");
        return "";
    }

    function gologin() {
        if (waiting)
            return;

        const mistake = formError();
        if (mistake !== "") {
            showError(mistake);
            return;
        }

        // These values are sent and stored, even if the user edits the form before the reply.
        const account = [username, passwd, cimUrl, pdsUrl];
        waiting = true;
        const error = loginCtrl.login(...account);
        waiting = false;
        // The host may have shut down meanwhile.
        if (!loginCtrl)
            return;

        showError(error);
        if (error !== "")
            return;

        console.log(" login success....");
        loginCtrl.onResetCache(...account, keepPassword.checked);
        root.cimServer = account[2];
        root.pdsServer = account[3];
        // Another page may have been requested meanwhile.
        if (contentLoader.item === loginComp)
            root.replacePage("AppListComp");
    }

    // Never called. It adds "http://" to every address that does not begin with it, even to an https address.
    function logout() {
        const server = cimUrl.startsWith("http://") ? cimUrl : "http://" + cimUrl;
        const request = new XMLHttpRequest();
        request.open("GET", server + "/v1.0/service/uc/auth/logout", true);
        request.send();
    }

    function fillFromCache() {
        const info = (root.userInfos || []).find(info => info.user === username);
        let addresses = [];

        passwordField.text = "";
        keepPassword.checked = false;
        if (info) {
            // The field is set before the box, because a change of the field unchecks the box.
            passwordField.text = info.passwd || ""; // a cache file from another source may lack the password
            keepPassword.checked = passwordField.text !== "";
            addresses = info.cimUrlList.slice();
        }
        if (defaultUrl !== "" && !addresses.includes(defaultUrl))
            addresses.push(defaultUrl);
        addressBox.dropList = addresses;
    }

    onUsernameChanged: fillFromCache()
    onPasswdChanged: keepPassword.checked = false

    Keys.onReturnPressed: {
        if (!event.isAutoRepeat)
            gologin();
    }
    Keys.onEnterPressed: {
        if (!event.isAutoRepeat)
            gologin();
    }

    BComboBox {
        id: userNameBox
        objectName: "userNameBox"

        anchors {
            left: parent.left
            right: parent.right
            leftMargin: 26
            rightMargin: 26
        }
        height: 36
        focus: true
        placeholderText: qsTr("用户名")
        headImage: "qrc:/NelvoPlugin/qmls/images/userName.png"
        dropList: root.userList

        onDropListChanged: outText = dropList.length > 0 ? dropList[0] : ""
        onOutTextChanged: loginComp.username = outText.trim()
    }

    InputField {
        id: passwordField
        objectName: "passwordField"

        anchors {
            top: userNameBox.bottom
            topMargin: 20
            left: userNameBox.left
            right: userNameBox.right
        }
        height: 36
        leftPadding: height + 4
        echoMode: TextInput.Password
        placeholderText: qsTr("密码")
        background: Rectangle {
            color: userNameBox.normalColor

            Image {
                x: 2
                y: 2
                source: "qrc:/NelvoPlugin/qmls/images/passwd.png"
            }
        }

        FocusFrame {}

        onTextChanged: loginComp.passwd = text.trim()
    }

    BComboBox {
        id: addressBox
        objectName: "addressBox"

        anchors {
            top: passwordField.bottom
            topMargin: 20
            left: userNameBox.left
            right: userNameBox.right
        }
        height: 36
        placeholderText: qsTr("Nelvo服务器地址")
        headImage: "qrc:/NelvoPlugin/qmls/images/C.png"

        onDropListChanged: outText = dropList.length > 0 ? dropList[0] : defaultUrl
        onOutTextChanged: loginComp.cimUrl = outText.trim()
    }

    T.CheckBox {
        id: keepPassword
        objectName: "keepPassword"

        anchors {
            top: addressBox.bottom
            topMargin: 14
            left: userNameBox.left
        }
        implicitWidth: implicitContentWidth
        height: 16
        spacing: 6
        text: qsTr("记住密码")
        font.family: Theme.fontFamily
        font.pixelSize: Theme.smallTextSize
        indicator: Image {
            y: (keepPassword.height - height) / 2
            source: keepPassword.checked ? "qrc:/NelvoPlugin/qmls/images/checkYes.png"
                                         : "qrc:/NelvoPlugin/qmls/images/checkNo.png"
        }

        Accessible.name: text

        contentItem: Text {
            leftPadding: keepPassword.indicator.width + keepPassword.spacing
            text: keepPassword.text
            font: keepPassword.font
            renderType: Text.NativeRendering
            color: keepPassword.visualFocus ? Theme.text : Theme.softText
            verticalAlignment: Text.AlignVCenter
        }

        FocusFrame {
            anchors.margins: -4
        }
    }

    ErrorItem {
        id: errorItem
        objectName: "errorItem"

        anchors {
            left: userNameBox.left
            right: userNameBox.right
            bottom: parent.bottom
            bottomMargin: 76
        }
        bottomPadding: 6
    }

    GradiantBtn {
        id: loginButton
        objectName: "loginButton"

        anchors {
            left: userNameBox.left
            right: userNameBox.right
            bottom: parent.bottom
            bottomMargin: 40
        }
        text: qsTr("登录")

        onClicked: loginComp.gologin()
    }

    MouseArea {
        anchors.fill: parent
        visible: loginComp.waiting
        hoverEnabled: true
        cursorShape: Qt.BusyCursor
    }
}
