<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>ApplistComp</name>
    <message>
        <source>选择企业:</source>
        <translation>Enterprise:</translation>
    </message>
    <message>
        <source>折叠</source>
        <translation>Fold</translation>
    </message>
    <message>
        <source>展开</source>
        <translation>Unfold</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>Background</name>
    <message>
        <source>关闭</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>CoverComp</name>
    <message>
        <source>安装中</source>
        <translation>Installing</translation>
    </message>
</context>
<context>
    <name>DownloadComp</name>
    <message>
        <source>%1/%2 MB</source>
        <translation>%1/%2 MB</translation>
    </message>
    <message>
        <source>&lt;font color=&apos;%1&apos;&gt;%2&lt;/font&gt;&lt;font color=&apos;%3&apos;&gt;/%4 MB&lt;/font&gt;</source>
        <translation>&lt;font color=&apos;%1&apos;&gt;%2&lt;/font&gt;&lt;font color=&apos;%3&apos;&gt;/%4 MB&lt;/font&gt;</translation>
    </message>
    <message>
        <source>下载完成</source>
        <translation>Downloaded</translation>
    </message>
    <message>
        <source>正在下载</source>
        <translation>Downloading</translation>
    </message>
    <message>
        <source>安装</source>
        <translation>Install</translation>
    </message>
</context>
<context>
    <name>EProjOrgCheck</name>
    <message>
        <source>所有工程</source>
        <translation>All projects</translation>
    </message>
</context>
<context>
    <name>LoginComp</name>
    <message>
        <source>用户名或密码输入为空！</source>
        <translation>User name or password missing</translation>
    </message>
    <message>
        <source>Editor 服务器地址为空！</source>
        <translation>Server address missing</translation>
    </message>
    <message>
        <source>Editor 地址错误！</source>
        <translation>Invalid server address</translation>
    </message>
    <message>
        <source>用户名</source>
        <translation>User name</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>Nelvo服务器地址</source>
        <translation>Server address</translation>
    </message>
    <message>
        <source>记住密码</source>
        <translation>Remember password</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>Sign in</translation>
    </message>
</context>
<context>
    <name>PanelFirm</name>
    <message>
        <source>BIM工程不能重复导入</source>
        <translation>This BIM project is already imported</translation>
    </message>
    <message>
        <source>关联DWG模型</source>
        <translation>DWG drawings</translation>
    </message>
    <message>
        <source>关联BIM模型</source>
        <translation>BIM models</translation>
    </message>
    <message>
        <source>性能优先</source>
        <translation>Fast</translation>
    </message>
    <message>
        <source>完整度优先</source>
        <translation>Complete</translation>
    </message>
    <message>
        <source>下载模型</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>转换概要模型</source>
        <translation>Convert to outline</translation>
    </message>
    <message>
        <source>搜索</source>
        <translation>Search</translation>
    </message>
</context>
<context>
    <name>SDKBindParam</name>
    <message>
        <source>物联绑定</source>
        <translation>IoT device</translation>
    </message>
    <message>
        <source>设备ID</source>
        <translation>Device ID</translation>
    </message>
    <message>
        <source>清除</source>
        <translation>Clear</translation>
    </message>
</context>
<context>
    <name>UpdateComp</name>
    <message>
        <source>检测到新版本！</source>
        <translation>New version available</translation>
    </message>
    <message>
        <source>跳过</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>升级</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>更新内容</source>
        <translation>Release notes</translation>
    </message>
</context>
<context>
    <name>UpdateLog</name>
    <message>
        <source>更新日志</source>
        <translation>Update log</translation>
    </message>
</context>
<context>
    <name>ValidComp</name>
    <message>
        <source>正在登录</source>
        <translation>Signing in</translation>
    </message>
</context>
</TS>
